#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"
#include "QelFunctionalityCore/Monitoring/QelPerfMonValue.h"
#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"
#include "QelFunctionalityCore/Monitoring/QelTimeInterval.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> monitoringRecordTypes() {
    return {
        makeRecordType<QelMonitorData>("QelMonitorData"),
        makeRecordType<QelPerfMonActualValue>("QelPerfMonActualValue"),
        makeRecordType<QelPerfMonHistoricalValue>("QelPerfMonHistoricalValue"),
        makeRecordType<QelPerfStat>("QelPerfStat"),
        makeRecordType<QelTimeInterval>("QelTimeInterval"),
    };
}

} // namespace Qel
