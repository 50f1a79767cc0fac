#include "QelFunctionalityCore/QelFamilyRecordTypes.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelIPAddress.h"
#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"

namespace Qel {

std::vector<QelRecordType> valuesRecordTypes() {
    return {
        makeRecordType<QelEID>("QelEID"),
        makeRecordType<QelEIDList>("QelEIDList"),
        makeRecordType<QelGUID>("QelGUID"),
        makeRecordType<QelIPAddress>("QelIPAddress"),
        makeRecordType<QelNamedOpStrListProperty>("QelNamedOpStrListProperty"),
    };
}

} // namespace Qel
