#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Host/QelCommonDevice.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A device and its mount point.
struct QEL_EXPORT QelDevMountInfo : QelRecord<QelDevMountInfo> {
    std::string f1114;
    std::string f1113;
    bool f1116 = false;
    bool f1118 = false;
    long long size = 0;
    std::string f1117; ///< must not be empty
    std::string f1250;

    /// -1 if f1117 is empty; the other elements are still written.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelDevMountInfo& info) const;
    };
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// The devices of a host, by kind.
struct QEL_EXPORT QelDeviceInfo : QelRecord<QelDeviceInfo> {
    std::vector<std::string> f1113;
    std::vector<std::string> f1114;
    std::vector<std::string> f1115;

    static const QelWireLayout& wire;
};

/// One end of a forwarded device.  Cannot be written if `device` is null.
struct QEL_EXPORT QelForwardPoint : QelRecord<QelForwardPoint> {
    QelEID eid; ///< invalid: unset
    boost::shared_ptr<QelCommonDevice> device;

    static const QelWireLayout& wire;
};

/// A device of one environment, forwarded to another.
struct QEL_EXPORT QelForwardDevice : QelRecord<QelForwardDevice> {
    QelForwardPoint source;
    QelForwardPoint destination;

    static const QelWireLayout& wire;
};

} // namespace Qel
