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
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> hostRecordTypes() {
    return {
        tableRecordType<QelCPULoad>(),
        tableRecordType<QelCommonDevice>(),
        tableRecordType<QelDate>(),
        tableRecordType<QelDevMountInfo>(),
        tableRecordType<QelDeviceInfo>(),
        tableRecordType<QelDisk>(),
        tableRecordType<QelDiskImage>(),
        tableRecordType<QelDiskPartition>(),
        tableRecordType<QelEnvSample>(),
        tableRecordType<QelFileListType>(),
        tableRecordType<QelFileShare>(),
        tableRecordType<QelForwardDevice>(),
        tableRecordType<QelForwardPoint>(),
        tableRecordType<QelGroup>(),
        tableRecordType<QelGroupNameID>(),
        tableRecordType<QelHNLookupInfoType>(),
        tableRecordType<QelImageInfo>(),
        tableRecordType<QelInstallationPackage>(),
        tableRecordType<QelLoadAvg1>(),
        tableRecordType<QelLoadAvg>(),
        tableRecordType<QelLogClass>(),
        tableRecordType<QelLogInfo>(),
        tableRecordType<QelLogParameters>(),
        tableRecordType<QelMailTemplate>(),
        tableRecordType<QelMailerAccount>(),
        tableRecordType<QelMailerConfig>(),
        tableRecordType<QelNetInterface>(),
        tableRecordType<QelNetTransfer>(),
        tableRecordType<QelNetTransferStat>(),
        tableRecordType<QelNetwork>(),
        tableRecordType<QelPackage>(),
        tableRecordType<QelPackageLinux>(),
        tableRecordType<QelPackageListModificationData>(),
        tableRecordType<QelPackageManagerListOptions>(),
        tableRecordType<QelPackageManagerOptions>(),
        tableRecordType<QelProcessList>(),
        tableRecordType<QelProcessMExecOutput>(),
        tableRecordType<QelProcessMExecParams>(),
        tableRecordType<QelProgCredentials>(),
        tableRecordType<QelSampleConf>(),
        tableRecordType<QelService>(),
        tableRecordType<QelSnapshot>(),
        tableRecordType<QelStats>(),
        tableRecordType<QelSystemInfo>(),
        tableRecordType<QelTimeZone>(),
        tableRecordType<QelTopInfo>(),
        tableRecordType<QelUsageStats>(),
        tableRecordType<QelUser>(),
        tableRecordType<QelUserNameID>(),
        tableRecordType<QelVncConnectionInfo>(),
        tableRecordType<QelVncConsoleInfo>(),
        tableRecordType<QelVtVersion>(),
        tableRecordType<QelWindowsDevice>(),
        makeRecordType<QelPackageDeb>("QelPackageDeb", &QelPackageLinux::wire),
        makeRecordType<QelPackageRpm>("QelPackageRpm", &QelPackageLinux::wire),
        makeRecordType<QelProcessInfo>("QelProcessInfo"),
        makeRecordType<QelScsiDevice>("QelScsiDevice", &QelWindowsDevice::wire),
        makeRecordType<QelTopData>("QelTopData"),
        makeRecordType<QelTopData::TopSet>("QelTopData::TopSet"),
    };
}

} // namespace Qel
