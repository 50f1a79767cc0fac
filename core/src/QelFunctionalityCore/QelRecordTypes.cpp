#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <vector>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"
#include "QelFunctionalityCore/Environment/QelVtRecords.h"
#include "QelFunctionalityCore/Network/QelFirewallRule.h"
#include "QelFunctionalityCore/Network/QelIPPool.h"
#include "QelFunctionalityCore/Network/QelInterfaceRate.h"
#include "QelFunctionalityCore/Network/QelNetDevice.h"
#include "QelFunctionalityCore/Network/QelPagerSortCondition.h"
#include "QelFunctionalityCore/Network/QelResource.h"
#include "QelFunctionalityCore/Network/QelRowSet.h"
#include "QelFunctionalityCore/Profile/QelProfile.h"
#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"

namespace Qel {

namespace {

// A record that its table tells whole.
template <class Record> QelRecordType byTable() {
    const QelWireLayout& layout = qelWireLayout<Record>();
    return makeRecordType<Record>(layout.typeName, &layout);
}

// A record that is all that a message holds.
template <class Record> QelRecordType wholeMessage(std::string_view name) {
    QelRecordType type = makeRecordType<Record>(name);
    type.isWholeMessage = true;
    return type;
}

// A base without objects of its own: the element's complex type tells the class, and that has its own table.
template <class Base> struct AnyReader {
    int operator()(const QelMessageIterator& cursor, boost::shared_ptr<Base>& record) const {
        return QelReaderDerived<Base>(false)(cursor, record);
    }
};
template <class Base> QelRecordType anyOf() {
    const QelWireLayout& layout = qelWireLayout<Base>();
    QelRecordType type =
        makeRecordType<boost::shared_ptr<Base>, AnyReader<Base>, QelWriterDerived<Base>>(layout.typeName);
    type.nsId = layout.nsId;
    type.typeId = layout.typeId;
    return type;
}

std::vector<QelRecordType> makeTypes() {
    std::vector<QelRecordType> types{
        byTable<QelAllocateIPParams>(),
        byTable<QelAuthName>(),
        byTable<QelBrowseColumn>(),
        byTable<QelBrowseInfo>(),
        byTable<QelBrowseSettings>(),
        byTable<QelConnectionInfo>(),
        byTable<QelDashboardSection>(),
        byTable<QelDesktopAction>(),
        byTable<QelDesktopSettings>(),
        byTable<QelEnvMListOptions>(),
        byTable<QelEnvStatus>(),
        byTable<QelFirewallRule>(),
        byTable<QelFirewallRule::NetAddress>(),
        byTable<QelFirewallRule::PortRange>(),
        byTable<QelIPPool>(),
        byTable<QelIPPoolAllocation>(),
        byTable<QelIPPoolAllocationItem>(),
        byTable<QelIPPoolBaseData>(),
        byTable<QelIPPoolUsage>(),
        byTable<QelIPRange>(),
        byTable<QelInterfaceRate>(),
        byTable<QelInterfaceSettings>(),
        byTable<QelLogOptions>(),
        byTable<QelNativeConfig>(),
        byTable<QelNetNIC>(),
        byTable<QelNetVLAN>(),
        byTable<QelOS>(),
        byTable<QelPagerSortCondition>(),
        byTable<QelPersonalSettings>(),
        byTable<QelPoolResourcePair>(),
        byTable<QelProfile>(),
        byTable<QelQoS>(),
        byTable<QelRealm>(),
        byTable<QelResource>(),
        byTable<QelResourceIp>(),
        byTable<QelResourceIpPool>(),
        byTable<QelResourcePool>(),
        byTable<QelRowSet>(),
        byTable<QelScheduleTask>(),
        byTable<QelSchedulerDailyTrigger>(),
        byTable<QelSchedulerMonthlyDayOfWeekTrigger>(),
        byTable<QelSchedulerMonthlyTrigger>(),
        byTable<QelSchedulerOnceTrigger>(),
        byTable<QelSchedulerWeeklyTrigger>(),
        byTable<QelScreenInfo>(),
        byTable<QelScreenSettings>(),
        byTable<QelVtInfo>(),
        byTable<QelVtSettings>(),
        makeRecordType<QelConnectivityInfo>("QelConnectivityInfo", &qelWireLayout<QelConnectivityInfo>()),
        makeRecordType<QelEID>("QelEID"),
        makeRecordType<QelEIDList>("QelEIDList"),
        makeRecordType<QelEnv>("QelEnv", &qelWireLayout<QelEnv>()),
        makeRecordType<QelEnvConfig>("QelEnvConfig", &qelWireLayout<QelEnvConfig>()),
        makeRecordType<QelGUID>("QelGUID"),
        makeRecordType<QelIPAddress>("QelIPAddress"),
        makeRecordType<QelNamedOpStrListProperty>("QelNamedOpStrListProperty"),
        makeRecordType<QelNetBridge>("QelNetBridge", &qelWireLayout<QelNetDevice>()),
        makeRecordType<QelNetDevice>("QelNetDevice", &qelWireLayout<QelNetDevice>()),
        makeRecordType<QelSID>("QelSID"),
        makeRecordType<QelSecurityPrincipal>("QelSecurityPrincipal", &qelWireLayout<QelSecurityPrincipal>()),
        makeRecordType<QelStringTree<1018, true>>("QelStringTree<1018, true>"),
        makeRecordType<QelStringTree<1026, false>>("QelStringTree<1026, false>"),
        anyOf<QelSchedulerTrigger>(),
        makeRecordType<QelVEnvConfig>("QelVEnvConfig", &qelWireLayout<QelEnvConfig>()),
        wholeMessage<QelConfiguration>("QelConfiguration"),
    };
    std::sort(types.begin(), types.end(),
              [](const QelRecordType& a, const QelRecordType& b) { return a.name < b.name; });
    return types;
}

} // namespace

std::span<const QelRecordType> recordTypes() {
    static const std::vector<QelRecordType> types = makeTypes();
    return types;
}

const QelRecordType* findRecordType(std::string_view name) {
    const auto types = recordTypes();
    const auto found =
        std::lower_bound(types.begin(), types.end(), name,
                         [](const QelRecordType& type, std::string_view key) { return type.name < key; });
    return found != types.end() && found->name == name ? &*found : nullptr;
}

} // namespace Qel
