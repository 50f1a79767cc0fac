#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Host/QelCommonDevice.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// A device and its mount point.
struct QelDevMountInfo {
    std::string f1114;
    std::string f1113;
    bool f1116 = false;
    bool f1118 = false;
    long long size = 0;
    std::string f1117; ///< must not be empty
    std::string f1250;

    using Reader = QelRecordReader<QelDevMountInfo>;
    /// -1 if f1117 is empty; the other elements are still written.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelDevMountInfo& info) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The devices of a host, by kind.
struct QelDeviceInfo {
    std::vector<std::string> f1113;
    std::vector<std::string> f1114;
    std::vector<std::string> f1115;

    using Reader = QelRecordReader<QelDeviceInfo>;
    using Writer = QelRecordWriter<QelDeviceInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// One end of a forwarded device.  Cannot be written if `device` is null.
struct QelForwardPoint {
    QelEID eid; ///< invalid: unset
    boost::shared_ptr<QelCommonDevice> device;

    using Reader = QelRecordReader<QelForwardPoint>;
    using Writer = QelRecordWriter<QelForwardPoint>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A device of one environment, forwarded to another.
struct QelForwardDevice {
    QelForwardPoint source;
    QelForwardPoint destination;

    using Reader = QelRecordReader<QelForwardDevice>;
    using Writer = QelRecordWriter<QelForwardDevice>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
