#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

// Named pools of IPv4 and IPv6 addresses, as described by the service that allocates from them (see QelIPPoolMBase).
// An IPv4 address is stored in a QelIPv6 as an IPv4-compatible address.  The service defines the fields without a name.

namespace Qel {

/// An address range given by start and end, or a network given by start and prefix.
struct QelIPRange {
    QelIPv6 start;
    QelIPv6 end;         ///< the any address if there is a prefix
    unsigned prefix = 0; ///< length in bits, up to 128; above that, an IPv4 mask as a number; 0 if there is an end

    /// Returns -1 if the start is missing, or both end and prefix are.
    using Reader = QelRecordReader<QelIPRange>;
    /// Omits the end if there is a prefix.  Returns -1 if both are unset.
    using Writer = QelRecordWriter<QelIPRange>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Fields common to pools and allocations.
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

/// An allocated address, with the settings that its owner needs to use it.
struct QelIPPoolAllocation : QelIPPoolBaseData {
    std::string address;

    using Reader = QelRecordReader<QelIPPoolAllocation>;
    using Writer = QelRecordWriter<QelIPPoolAllocation>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The owner of an allocated address, and the time of the allocation.
struct QelIPPoolAllocationItem {
    QelGUID id;
    QelIPv6 address;    ///< unchanged if the message has none
    long long time = 0; ///< 0 if unset

    using Reader = QelRecordReader<QelIPPoolAllocationItem>;
    using Writer = QelRecordWriter<QelIPPoolAllocationItem>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Usage of a pool.
struct QelIPPoolUsage {
    QelGUID id;
    long long count = 0;
    long long value1059 = 0;
    std::vector<QelIPPoolAllocationItem> allocations; ///< the reader stops at the first malformed one

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
