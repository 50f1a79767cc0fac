#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <vector>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"
#include "QelFunctionalityCore/Environment/QelVtRecords.h"
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
#include "QelFunctionalityCore/Host/QelSnapshot.h"
#include "QelFunctionalityCore/Host/QelStatistics.h"
#include "QelFunctionalityCore/Host/QelSystemInfo.h"
#include "QelFunctionalityCore/Host/QelTopData.h"
#include "QelFunctionalityCore/Host/QelUser.h"
#include "QelFunctionalityCore/Host/QelVncRecords.h"
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

std::vector<QelRecordType> makeTypes() {
    std::vector<QelRecordType> types{
        byTable<QelAuthName>(),
        byTable<QelCPULoad>(),
        byTable<QelCommonDevice>(),
        byTable<QelConnectionInfo>(),
        byTable<QelDate>(),
        byTable<QelDevMountInfo>(),
        byTable<QelDeviceInfo>(),
        byTable<QelDisk>(),
        byTable<QelDiskImage>(),
        byTable<QelDiskPartition>(),
        byTable<QelEnvMListOptions>(),
        byTable<QelEnvSample>(),
        byTable<QelEnvStatus>(),
        byTable<QelFileFilter>(),
        byTable<QelFileInfo>(),
        byTable<QelFileListType>(),
        byTable<QelFileShare>(),
        byTable<QelFileType>(),
        byTable<QelForwardDevice>(),
        byTable<QelForwardPoint>(),
        byTable<QelGroup>(),
        byTable<QelGroupNameID>(),
        byTable<QelHNLookupInfoType>(),
        byTable<QelImageInfo>(),
        byTable<QelInstallationPackage>(),
        byTable<QelLoadAvg1>(),
        byTable<QelLoadAvg>(),
        byTable<QelLogClass>(),
        byTable<QelLogInfo>(),
        byTable<QelLogOptions>(),
        byTable<QelLogParameters>(),
        byTable<QelMailTemplate>(),
        byTable<QelMailerAccount>(),
        byTable<QelMailerConfig>(),
        byTable<QelNativeConfig>(),
        byTable<QelNetInterface>(),
        byTable<QelNetTransfer>(),
        byTable<QelNetTransferStat>(),
        byTable<QelNetwork>(),
        byTable<QelOS>(),
        byTable<QelPackage>(),
        byTable<QelPackageLinux>(),
        byTable<QelPackageListModificationData>(),
        byTable<QelPackageManagerListOptions>(),
        byTable<QelPackageManagerOptions>(),
        byTable<QelProcessList>(),
        byTable<QelProcessMExecOutput>(),
        byTable<QelProcessMExecParams>(),
        byTable<QelProgCredentials>(),
        byTable<QelQoS>(),
        byTable<QelRealm>(),
        byTable<QelSampleConf>(),
        byTable<QelScheduleTask>(),
        byTable<QelSchedulerDailyTrigger>(),
        byTable<QelSchedulerMonthlyDayOfWeekTrigger>(),
        byTable<QelSchedulerMonthlyTrigger>(),
        byTable<QelSchedulerOnceTrigger>(),
        byTable<QelSchedulerWeeklyTrigger>(),
        byTable<QelSecurityAttributes>(),
        byTable<QelSnapshot>(),
        byTable<QelStats>(),
        byTable<QelSystemInfo>(),
        byTable<QelTimeZone>(),
        byTable<QelTopInfo>(),
        byTable<QelUGIDLimits>(),
        byTable<QelUsageStats>(),
        byTable<QelUser>(),
        byTable<QelUserCredentials>(),
        byTable<QelUserNameID>(),
        byTable<QelVncConnectionInfo>(),
        byTable<QelVncConsoleInfo>(),
        byTable<QelVtInfo>(),
        byTable<QelVtSettings>(),
        byTable<QelVtVersion>(),
        byTable<QelWindowsDevice>(),
        makeRecordType<QelConnectivityInfo>("QelConnectivityInfo", &qelWireLayout<QelConnectivityInfo>()),
        makeRecordType<QelEID>("QelEID"),
        makeRecordType<QelEIDList>("QelEIDList"),
        makeRecordType<QelEnv>("QelEnv", &qelWireLayout<QelEnv>()),
        makeRecordType<QelEnvConfig>("QelEnvConfig", &qelWireLayout<QelEnvConfig>()),
        makeRecordType<QelFilerOptions>("QelFilerOptions"),
        makeRecordType<QelGUID>("QelGUID"),
        makeRecordType<QelIPAddress>("QelIPAddress"),
        makeRecordType<QelNamedOpStrListProperty>("QelNamedOpStrListProperty"),
        makeRecordType<QelPackageDeb>("QelPackageDeb", &qelWireLayout<QelPackageLinux>()),
        makeRecordType<QelPackageRpm>("QelPackageRpm", &qelWireLayout<QelPackageLinux>()),
        makeRecordType<QelProcessInfo>("QelProcessInfo"),
        makeRecordType<QelSID>("QelSID"),
        makeRecordType<QelScsiDevice>("QelScsiDevice", &qelWireLayout<QelWindowsDevice>()),
        makeRecordType<QelSecurityPrincipal>("QelSecurityPrincipal", &qelWireLayout<QelSecurityPrincipal>()),
        makeRecordType<QelTopData>("QelTopData"),
        makeRecordType<QelTopData::TopSet>("QelTopData::TopSet"),
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
