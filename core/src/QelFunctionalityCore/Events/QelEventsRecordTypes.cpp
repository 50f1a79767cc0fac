#include "QelFunctionalityCore/Events/QelAlertData.h"
#include "QelFunctionalityCore/Events/QelEvent.h"
#include "QelFunctionalityCore/Events/QelEventData.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Events/QelRequestProgressData.h"
#include "QelFunctionalityCore/Events/QelResourceAlertData.h"
#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> eventsRecordTypes() {
    return {
        tableRecordType<QelAlertData>(),
        tableRecordType<QelAnyEventData>(),
        tableRecordType<QelEvent>(),
        tableRecordType<QelInfo>(),
        makeRecordType<QelRequestProgressData>("QelRequestProgressData", &QelRequestProgressData::wire),
        makeRecordType<QelResourceAlertData>("QelResourceAlertData", &QelResourceAlertData::wire),
        makeRecordType<QelServerGroupAlertData>("QelServerGroupAlertData", &QelServerGroupAlertData::wire),
    };
}

} // namespace Qel
