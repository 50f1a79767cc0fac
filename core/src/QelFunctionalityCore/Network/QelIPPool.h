#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

// Named pools of IPv4 and IPv6 addresses, as the service that allocates from them describes them (see QelIPPoolMBase).
// An IPv4 address stands in a QelIPv6 as the IPv4-compatible one.  What the fields without a name mean is the business
// of that service.

namespace Qel {

/// Addresses from a start up to an end, or those of the network that a start and a prefix tell.
struct QelIPRange {
    QelIPv6 start;
    QelIPv6 end;         ///< the any address if there is a prefix
    unsigned prefix = 0; ///< bits, up to 128; above that an IPv4 mask as a number; 0 if there is an end

    /// -1 without a start, and with neither an end nor a prefix.
    using Reader = QelRecordReader<QelIPRange>;
    /// With a prefix the end isn't written.  -1 with neither.
    using Writer = QelRecordWriter<QelIPRange>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// What pools and allocations from them share.
struct QelIPPoolBaseData {
    std::string netmask;
    QelOptionalProperty<std::vector<QelIPv6>> nameServers;
    QelIPv6 address2050;

    using Reader = QelRecordReader<QelIPPoolBaseData>;
    using Writer = QelRecordWriter<QelIPPoolBaseData>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A named pool.
struct QelIPPool : QelIPPoolBaseData {
    QelGUID id;
    std::string name;
    std::string description; ///< may hold any bytes
    QelOptionalProperty<std::vector<QelIPRange>> ranges;
    QelOptionalProperty<std::set<QelGUID>> members;
    QelOptionalProperty<bool> disabled;

    using Reader = QelRecordReader<QelIPPool>;
    using Writer = QelRecordWriter<QelIPPool>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// An address that was allocated, with what its owner needs to use it.
struct QelIPPoolAllocation : QelIPPoolBaseData {
    std::string address;

    using Reader = QelRecordReader<QelIPPoolAllocation>;
    using Writer = QelRecordWriter<QelIPPoolAllocation>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Who has an address, and since when.
struct QelIPPoolAllocationItem {
    QelGUID id;
    QelIPv6 address;    ///< a message without one leaves it
    long long time = 0; ///< 0 for none

    using Reader = QelRecordReader<QelIPPoolAllocationItem>;
    using Writer = QelRecordWriter<QelIPPoolAllocationItem>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// How full a pool is.
struct QelIPPoolUsage {
    QelGUID id;
    long long count = 0;
    long long value1059 = 0;
    std::vector<QelIPPoolAllocationItem> allocations; ///< up to the first that can't be read

    using Reader = QelRecordReader<QelIPPoolUsage>;
    using Writer = QelRecordWriter<QelIPPoolUsage>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A request for addresses.
struct QelAllocateIPParams {
    QelGUID id;
    QelGUID id2182;
    std::set<QelGUID> ids2183;
    std::vector<std::string> addresses;
    long long time = 0;
    int count = 0;

    using Reader = QelRecordReader<QelAllocateIPParams>;
    using Writer = QelRecordWriter<QelAllocateIPParams>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
