#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Host/QelStatistics.h"

namespace Qel {

/// A file system on a disk of a host.
struct QelDiskPartition {
    std::string name;
    std::string f1297;
    int f1299 = 0;
    std::string f1298;
    std::vector<std::string> f1804;
    QelUsageStats blocks; ///< bytes
    QelUsageStats inodes;

    using Reader = QelRecordReader<QelDiskPartition>;
    using Writer = QelRecordWriter<QelDiskPartition>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The file systems of a host.
struct QelDisk {
    std::vector<QelDiskPartition> partitions;

    using Reader = QelRecordReader<QelDisk>;
    using Writer = QelRecordWriter<QelDisk>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
