#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvConfig.h"
#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"
#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelFunctionalityCore/Environment/QelQoS.h"
#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"
#include "QelFunctionalityCore/Environment/QelVtRecords.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> environmentRecordTypes() {
    return {
        tableRecordType<QelEnvMListOptions>(),
        tableRecordType<QelEnvStatus>(),
        tableRecordType<QelLogOptions>(),
        tableRecordType<QelNativeConfig>(),
        tableRecordType<QelOS>(),
        tableRecordType<QelQoS>(),
        tableRecordType<QelVtInfo>(),
        tableRecordType<QelVtSettings>(),
        makeRecordType<QelEnv>("QelEnv", &QelEnv::wire),
        makeRecordType<QelEnvConfig>("QelEnvConfig", &QelEnvConfig::wire),
        makeRecordType<QelVEnvConfig>("QelVEnvConfig", &QelEnvConfig::wire),
    };
}

} // namespace Qel
