#include "QelFunctionalityCore/Network/QelFirewallRule.h"
#include "QelFunctionalityCore/Network/QelIPPool.h"
#include "QelFunctionalityCore/Network/QelInterfaceRate.h"
#include "QelFunctionalityCore/Network/QelNetDevice.h"
#include "QelFunctionalityCore/Network/QelPagerSortCondition.h"
#include "QelFunctionalityCore/Network/QelResource.h"
#include "QelFunctionalityCore/Network/QelRowSet.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> networkRecordTypes() {
    return {
        tableRecordType<QelAllocateIPParams>(),
        tableRecordType<QelFirewallRule::NetAddress>(),
        tableRecordType<QelFirewallRule::PortRange>(),
        tableRecordType<QelFirewallRule>(),
        tableRecordType<QelIPPool>(),
        tableRecordType<QelIPPoolAllocation>(),
        tableRecordType<QelIPPoolAllocationItem>(),
        tableRecordType<QelIPPoolBaseData>(),
        tableRecordType<QelIPPoolUsage>(),
        tableRecordType<QelIPRange>(),
        tableRecordType<QelInterfaceRate>(),
        tableRecordType<QelNetNIC>(),
        tableRecordType<QelNetVLAN>(),
        tableRecordType<QelPagerSortCondition>(),
        tableRecordType<QelPoolResourcePair>(),
        tableRecordType<QelResource>(),
        tableRecordType<QelResourceIp>(),
        tableRecordType<QelResourceIpPool>(),
        tableRecordType<QelResourcePool>(),
        tableRecordType<QelRowSet>(),
        makeRecordType<QelNetBridge>("QelNetBridge", &QelNetDevice::wire),
        makeRecordType<QelNetDevice>("QelNetDevice", &QelNetDevice::wire),
        makeRecordType<QelStringTree<1018, true>>("QelStringTree<1018, true>"),
        makeRecordType<QelStringTree<1026, false>>("QelStringTree<1026, false>"),
    };
}

} // namespace Qel
