#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

// Named pools of IPv4 and IPv6 addresses, as described by the service that allocates from them (see QelIPPoolMBase).
// An IPv4 address is stored in a QelIPv6 as an IPv4-compatible address.  The service defines the fields without a name.

namespace Qel {

/// An address range given by start and end, or a network given by start and prefix.
struct QEL_EXPORT QelIPRange : QelRecord<QelIPRange> {
    QelIPv6 start;
    QelIPv6 end;         ///< the any address if there is a prefix
    unsigned prefix = 0; ///< length in bits, up to 128; above that, an IPv4 mask as a number; 0 if there is an end

    /// Reader: returns -1 if the start is missing, or both end and prefix are.
    /// Writer: omits the end if there is a prefix.  Returns -1 if both are unset.
    static const QelWireLayout& wire;
};

/// Fields common to pools and allocations.
struct QEL_EXPORT QelIPPoolBaseData : QelRecord<QelIPPoolBaseData> {
    std::string netmask;
    QelOptionalProperty<std::vector<QelIPv6>> nameServers;
    QelIPv6 address2050;

    static const QelWireLayout& wire;
};

/// A named pool.
struct QEL_EXPORT QelIPPool : QelRecord<QelIPPool, QelIPPoolBaseData> {
    QelGUID id;
    std::string name;
    std::string description; ///< may hold any bytes
    QelOptionalProperty<std::vector<QelIPRange>> ranges;
    QelOptionalProperty<std::set<QelGUID>> members;
    QelOptionalProperty<bool> disabled;

    static const QelWireLayout& wire;
};

/// An allocated address, with the settings that its owner needs to use it.
struct QEL_EXPORT QelIPPoolAllocation : QelRecord<QelIPPoolAllocation, QelIPPoolBaseData> {
    std::string address;

    static const QelWireLayout& wire;
};

/// The owner of an allocated address, and the time of the allocation.
struct QEL_EXPORT QelIPPoolAllocationItem : QelRecord<QelIPPoolAllocationItem> {
    QelGUID id;
    QelIPv6 address;    ///< unchanged if the message has none
    long long time = 0; ///< 0 if unset

    static const QelWireLayout& wire;
};

/// Usage of a pool.
struct QEL_EXPORT QelIPPoolUsage : QelRecord<QelIPPoolUsage> {
    QelGUID id;
    long long count = 0;
    long long value1059 = 0;
    std::vector<QelIPPoolAllocationItem> allocations; ///< the reader stops at the first malformed one

    static const QelWireLayout& wire;
};

/// A request for addresses.
struct QEL_EXPORT QelAllocateIPParams : QelRecord<QelAllocateIPParams> {
    QelGUID id;
    QelGUID id2182;
    std::set<QelGUID> ids2183;
    std::vector<std::string> addresses;
    long long time = 0;
    int count = 0;

    static const QelWireLayout& wire;
};

} // namespace Qel
