#include "QelFunctionalityCore/Profile/QelBrowseSettings.h"
#include "QelFunctionalityCore/Profile/QelDesktopSettings.h"
#include "QelFunctionalityCore/Profile/QelInterfaceSettings.h"
#include "QelFunctionalityCore/Profile/QelPersonalSettings.h"
#include "QelFunctionalityCore/Profile/QelProfile.h"
#include "QelFunctionalityCore/Profile/QelScreenSettings.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> profileRecordTypes() {
    return {
        tableRecordType<QelBrowseColumn>(),      tableRecordType<QelBrowseInfo>(),
        tableRecordType<QelBrowseSettings>(),    tableRecordType<QelDashboardSection>(),
        tableRecordType<QelDesktopAction>(),     tableRecordType<QelDesktopSettings>(),
        tableRecordType<QelInterfaceSettings>(), tableRecordType<QelPersonalSettings>(),
        tableRecordType<QelProfile>(),           tableRecordType<QelScreenInfo>(),
        tableRecordType<QelScreenSettings>(),
    };
}

} // namespace Qel
