#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "QelFunctionalityCore/Backup/QelBackup.h"
#include "QelFunctionalityCore/Backup/QelBackupData.h"
#include "QelFunctionalityCore/Backup/QelBackupOptions.h"
#include "QelFunctionalityCore/Backup/QelMigrateOptions.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"
#include "QelFunctionalityCore/Environment/QelVtRecords.h"
#include "QelFunctionalityCore/Events/QelEvent.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Events/QelRequestProgressData.h"
#include "QelFunctionalityCore/Events/QelResourceAlertData.h"
#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"
#include "QelFunctionalityCore/Files/QelFileFilter.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"
#include "QelFunctionalityCore/Files/QelFileType.h"
#include "QelFunctionalityCore/Files/QelFilerOptions.h"
#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"
#include "QelFunctionalityCore/Files/QelUGIDLimits.h"
#include "QelFunctionalityCore/Files/QelUserCredentials.h"
#include "QelFunctionalityCore/Host/QelCommonDevice.h"
#include "QelFunctionalityCore/Host/QelDate.h"
#include "QelFunctionalityCore/Host/QelDeviceRecords.h"
#include "QelFunctionalityCore/Host/QelDisk.h"
#include "QelFunctionalityCore/Host/QelDiskImage.h"
#include "QelFunctionalityCore/Host/QelEnvSample.h"
#include "QelFunctionalityCore/Host/QelLogRecords.h"
#include "QelFunctionalityCore/Host/QelMailerConfig.h"
#include "QelFunctionalityCore/Host/QelNameID.h"
#include "QelFunctionalityCore/Host/QelNetwork.h"
#include "QelFunctionalityCore/Host/QelPackage.h"
#include "QelFunctionalityCore/Host/QelPackageListModificationData.h"
#include "QelFunctionalityCore/Host/QelPackageManagerOptions.h"
#include "QelFunctionalityCore/Host/QelProcessList.h"
#include "QelFunctionalityCore/Host/QelProcessMExec.h"
#include "QelFunctionalityCore/Host/QelService.h"
#include "QelFunctionalityCore/Host/QelSnapshot.h"
#include "QelFunctionalityCore/Host/QelStatistics.h"
#include "QelFunctionalityCore/Host/QelSystemInfo.h"
#include "QelFunctionalityCore/Host/QelTopData.h"
#include "QelFunctionalityCore/Host/QelUser.h"
#include "QelFunctionalityCore/Host/QelVncRecords.h"
#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"
#include "QelFunctionalityCore/Monitoring/QelPerfMonValue.h"
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
#include "QelFunctionalityCore/Security/QelAce.h"
#include "QelFunctionalityCore/Security/QelDirControl.h"
#include "QelFunctionalityCore/Security/QelDirEntry.h"
#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelFunctionalityCore/Security/QelInfrastructureNode.h"
#include "QelFunctionalityCore/Security/QelPolicy.h"
#include "QelFunctionalityCore/Security/QelRole.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Security/QelSSOBase.h"
#include "QelFunctionalityCore/Security/QelSession.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

namespace {

// A record with a table.
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
    type.record = &typeid(Base);
    return type;
}

// An identity in a message of its own, not that of the vocabulary around it.
struct LoneVocIDReader : QelVocID::Reader {
    LoneVocIDReader() : Reader(true) {}
};

std::vector<QelRecordType> makeTypes() {
    std::vector<QelRecordType> types{
        byTable<QelAlertData>(),
        byTable<QelAllocateIPParams>(),
        byTable<QelAnyEventData>(),
        byTable<QelAuthName>(),
        byTable<QelBackup>(),
        byTable<QelBackupData>(),
        byTable<QelBackupGetEnvInfoOptions>(),
        byTable<QelBackupGetInfoOptions>(),
        byTable<QelBackupMConfig>(),
        byTable<QelBackupOperationStuff>(),
        byTable<QelBackupOptions>(),
        byTable<QelBrowseColumn>(),
        byTable<QelBrowseInfo>(),
        byTable<QelBrowseSettings>(),
        byTable<QelCPULoad>(),
        byTable<QelCalculateHWNodeNotes>(),
        byTable<QelCommonDevice>(),
        byTable<QelConnectionInfo>(),
        byTable<QelDSConfiguration>(),
        byTable<QelDSLocation>(),
        byTable<QelDSObjectInfo>(),
        byTable<QelDashboardSection>(),
        byTable<QelDate>(),
        byTable<QelDesktopAction>(),
        byTable<QelDesktopSettings>(),
        byTable<QelDestroyedBackupsData>(),
        byTable<QelDevMountInfo>(),
        byTable<QelDeviceInfo>(),
        byTable<QelDirEntry>(),
        byTable<QelDirRealm::LoginType>(),
        byTable<QelDirSortControl>(),
        byTable<QelDirVlvControl>(),
        byTable<QelDisk>(),
        byTable<QelDiskImage>(),
        byTable<QelDiskPartition>(),
        byTable<QelEffectivePolicyAssignment>(),
        byTable<QelEnvBackupData>(),
        byTable<QelEnvMListOptions>(),
        byTable<QelEnvSample>(),
        byTable<QelEnvStatus>(),
        byTable<QelEvent>(),
        byTable<QelExcludeList>(),
        byTable<QelFileFilter>(),
        byTable<QelFileInfo>(),
        byTable<QelFileListType>(),
        byTable<QelFileShare>(),
        byTable<QelFileType>(),
        byTable<QelFilerOptions>(),
        byTable<QelFirewallRule::NetAddress>(),
        byTable<QelFirewallRule::PortRange>(),
        byTable<QelFirewallRule>(),
        byTable<QelForwardDevice>(),
        byTable<QelForwardPoint>(),
        byTable<QelGroup>(),
        byTable<QelGroupNameID>(),
        byTable<QelHNLookupInfoType>(),
        byTable<QelIPPool>(),
        byTable<QelIPPoolAllocation>(),
        byTable<QelIPPoolAllocationItem>(),
        byTable<QelIPPoolBaseData>(),
        byTable<QelIPPoolUsage>(),
        byTable<QelIPRange>(),
        byTable<QelImageInfo>(),
        byTable<QelInfo>(),
        byTable<QelInfrastructureFolderAttributes>(),
        byTable<QelInfrastructureNode>(),
        byTable<QelInstallationPackage>(),
        byTable<QelInterfaceRate>(),
        byTable<QelInterfaceSettings>(),
        byTable<QelListBackupOptions>(),
        byTable<QelLoadAvg1>(),
        byTable<QelLoadAvg>(),
        byTable<QelLogClass>(),
        byTable<QelLogInfo>(),
        byTable<QelLogOptions>(),
        byTable<QelLogParameters>(),
        byTable<QelMailTemplate>(),
        byTable<QelMailerAccount>(),
        byTable<QelMailerConfig>(),
        byTable<QelMigratorCloneOptions>(),
        byTable<QelNativeConfig>(),
        byTable<QelNetInterface>(),
        byTable<QelNetNIC>(),
        byTable<QelNetTransfer>(),
        byTable<QelNetTransferStat>(),
        byTable<QelNetVLAN>(),
        byTable<QelNetwork>(),
        byTable<QelNewBackupData>(),
        byTable<QelOS>(),
        byTable<QelObjectRights>(),
        byTable<QelObjectToPolicyAssignment>(),
        byTable<QelP2VMigrateOptions>(),
        byTable<QelPackage>(),
        byTable<QelPackageLinux>(),
        byTable<QelPackageListModificationData>(),
        byTable<QelPackageManagerListOptions>(),
        byTable<QelPackageManagerOptions>(),
        byTable<QelPagerSortCondition>(),
        byTable<QelPersonalSettings>(),
        byTable<QelPolicy>(),
        byTable<QelPoolResourcePair>(),
        byTable<QelProcessList>(),
        byTable<QelProcessMExecOutput>(),
        byTable<QelProcessMExecParams>(),
        byTable<QelProfile>(),
        byTable<QelProgCredentials>(),
        byTable<QelQoS>(),
        byTable<QelRealm>(),
        byTable<QelRegisteredClient>(),
        byTable<QelRemoveBackupOptions>(),
        byTable<QelResource>(),
        byTable<QelResourceIp>(),
        byTable<QelResourceIpPool>(),
        byTable<QelResourcePool>(),
        byTable<QelRestoreOptions>(),
        byTable<QelRole>(),
        byTable<QelRoleAssignment>(),
        byTable<QelRowSet>(),
        byTable<QelSSOServerConfig>(),
        byTable<QelSSOServiceProviderConfig>(),
        byTable<QelSampleConf>(),
        byTable<QelScheduleTask>(),
        byTable<QelSchedulerDailyTrigger>(),
        byTable<QelSchedulerMonthlyDayOfWeekTrigger>(),
        byTable<QelSchedulerMonthlyTrigger>(),
        byTable<QelSchedulerOnceTrigger>(),
        byTable<QelSchedulerWeeklyTrigger>(),
        byTable<QelScreenInfo>(),
        byTable<QelScreenSettings>(),
        byTable<QelSearchBackupOptions>(),
        byTable<QelSecurityAttributes>(),
        byTable<QelSelectiveRestoreOptions>(),
        byTable<QelService>(),
        byTable<QelSnapshot>(),
        byTable<QelStats>(),
        byTable<QelSystemInfo>(),
        byTable<QelTask>(),
        byTable<QelTimeZone>(),
        byTable<QelTopInfo>(),
        byTable<QelUGIDLimits>(),
        byTable<QelUsageStats>(),
        byTable<QelUser>(),
        byTable<QelUserCredentials>(),
        byTable<QelUserNameID>(),
        byTable<QelV2PMigrateOptions>(),
        byTable<QelV2VMigrateOptions>(),
        byTable<QelVncConnectionInfo>(),
        byTable<QelVncConsoleInfo>(),
        byTable<QelVtInfo>(),
        byTable<QelVtSettings>(),
        byTable<QelVtVersion>(),
        byTable<QelWindowsDevice>(),
        makeRecordType<QelAce>("QelAce", &qelWireLayout<QelObjectRights>()),
        makeRecordType<QelCheck>("QelCheck", &qelWireLayout<QelObjectRights>()),
        makeRecordType<QelConnectivityInfo>("QelConnectivityInfo", &qelWireLayout<QelConnectivityInfo>()),
        makeRecordType<QelDirAttribute>("QelDirAttribute"),
        makeRecordType<QelDirControl>("QelDirControl", &qelWireLayout<QelDirControl>()),
        makeRecordType<QelDirRealm>("QelDirRealm", &qelWireLayout<QelDirRealm>()),
        makeRecordType<QelEID>("QelEID"),
        makeRecordType<QelEIDList>("QelEIDList"),
        makeRecordType<QelEnv>("QelEnv", &qelWireLayout<QelEnv>()),
        makeRecordType<QelEnvConfig>("QelEnvConfig", &qelWireLayout<QelEnvConfig>()),
        makeRecordType<QelGUID>("QelGUID"),
        makeRecordType<QelIPAddress>("QelIPAddress"),
        makeRecordType<QelMonitorData>("QelMonitorData"),
        makeRecordType<QelNamedOpStrListProperty>("QelNamedOpStrListProperty"),
        makeRecordType<QelPackageDeb>("QelPackageDeb", &qelWireLayout<QelPackageLinux>()),
        makeRecordType<QelPackageRpm>("QelPackageRpm", &qelWireLayout<QelPackageLinux>()),
        makeRecordType<QelProcessInfo>("QelProcessInfo"),
        makeRecordType<QelNetBridge>("QelNetBridge", &qelWireLayout<QelNetDevice>()),
        makeRecordType<QelNetDevice>("QelNetDevice", &qelWireLayout<QelNetDevice>()),
        makeRecordType<QelSID>("QelSID"),
        makeRecordType<QelScsiDevice>("QelScsiDevice", &qelWireLayout<QelWindowsDevice>()),
        makeRecordType<QelSecurityPrincipal>("QelSecurityPrincipal", &qelWireLayout<QelSecurityPrincipal>()),
        makeRecordType<QelTopData>("QelTopData"),
        makeRecordType<QelTopData::TopSet>("QelTopData::TopSet"),
        makeRecordType<QelSession>("QelSession", &qelWireLayout<QelSession>()),
        makeRecordType<QelToken>("QelToken", &qelWireLayout<QelToken>()),
        makeRecordType<QelStringTree<1018, true>>("QelStringTree<1018, true>"),
        makeRecordType<QelStringTree<1026, false>>("QelStringTree<1026, false>"),
        makeRecordType<QelPerfMonActualValue>("QelPerfMonActualValue"),
        makeRecordType<QelPerfMonHistoricalValue>("QelPerfMonHistoricalValue"),
        makeRecordType<QelPerfStat>("QelPerfStat"),
        makeRecordType<QelTimeInterval>("QelTimeInterval"),
        makeRecordType<QelRequestProgressData>("QelRequestProgressData", &qelWireLayout<QelRequestProgressData>()),
        makeRecordType<QelResourceAlertData>("QelResourceAlertData", &qelWireLayout<QelResourceAlertData>()),
        makeRecordType<QelServerGroupAlertData>("QelServerGroupAlertData", &qelWireLayout<QelServerGroupAlertData>()),
        anyOf<QelSchedulerTrigger>(),
        makeRecordType<QelVEnvConfig>("QelVEnvConfig", &qelWireLayout<QelEnvConfig>()),
        makeRecordType<QelVocID, LoneVocIDReader>("QelVocID", &qelWireLayout<QelVocID>()),
        makeRecordType<QelVocPrototype>("QelVocPrototype"),
        wholeMessage<QelConfiguration>("QelConfiguration"),
    };
    std::sort(types.begin(), types.end(),
              [](const QelRecordType& a, const QelRecordType& b) { return a.name < b.name; });
    return types;
}

// Templates with one instance, which has an alias.
constexpr std::pair<std::string_view, std::string_view> soleInstances[] = {{"QelRangedPool", "QelResourceIpPool"},
                                                                           {"QelRangedResource", "QelResourceIp"}};

} // namespace

std::span<const QelRecordType> recordTypes() {
    static const std::vector<QelRecordType> types = makeTypes();
    return types;
}

const QelRecordType* findRecordType(std::string_view name) {
    for (const auto& [templateName, alias] : soleInstances)
        if (name == templateName)
            name = alias;
    const auto types = recordTypes();
    const auto found =
        std::lower_bound(types.begin(), types.end(), name,
                         [](const QelRecordType& type, std::string_view key) { return type.name < key; });
    return found != types.end() && found->name == name ? &*found : nullptr;
}

} // namespace Qel
