#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Host/QelStatistics.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A file system on a disk of a host.
struct QEL_EXPORT QelDiskPartition : QelRecord<QelDiskPartition> {
    std::string name;
    std::string f1297;
    int f1299 = 0;
    std::string f1298;
    std::vector<std::string> f1804;
    QelUsageStats blocks; ///< bytes
    QelUsageStats inodes;

    static const QelWireLayout& wire;
};

/// The file systems of a host.
struct QEL_EXPORT QelDisk : QelRecord<QelDisk> {
    std::vector<QelDiskPartition> partitions;

    static const QelWireLayout& wire;
};

} // namespace Qel
