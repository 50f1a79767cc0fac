#include "QelFunctionalityCore/Network/QelIPPool.h"

#include "QelFunctionalityCore/Values/QelIPFunctors.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readEnd(const QelMessageIterator& cursor, QelIPRange& addresses) {
    return cursor.getObject(addresses.end, QelIPReader(), "end"_element);
}
int writeEnd(QelMessageIterator& cursor, const QelIPRange& addresses) {
    if (addresses.prefix != 0)
        return 0;
    return addresses.end.isAny() ? -1 : cursor.putObject(addresses.end, QelIPWriter(), "end"_element);
}

// QelIPReader accepts a mask as well as a plain number.
int readPrefix(const QelMessageIterator& cursor, QelIPRange& addresses) {
    cursor.getObject(addresses.prefix, QelIPReader(), "netmask"_element);
    return addresses.prefix == 0 && addresses.end.isAny() ? -1 : 0;
}
int writePrefix(QelMessageIterator& cursor, const QelIPRange& addresses) {
    if (addresses.prefix == 0)
        return 0;
    if (addresses.prefix <= QelIPv6::bits)
        return cursor.putValue(static_cast<int>(addresses.prefix), "netmask"_element);
    return cursor.putObject(addresses.prefix, QelIPWriter(), "netmask"_element);
}

int readNameServers(const QelMessageIterator& cursor, QelIPPoolBaseData& data) {
    if (cursor.seekPresence("name_servers"_element) != 0)
        return 0;
    const auto readItems = QelReaderList(QelIPReader(), "name_server"_element, QelReaderOptional);
    const int result = cursor.getObject(data.nameServers.get(), readItems, "name_servers"_element);
    data.nameServers.specify(result == 0);
    return result;
}
// IPv4 addresses are written in dotted form for agents without IPv6 support.
int writeNameServers(QelMessageIterator& cursor, const QelIPPoolBaseData& data) {
    if (!data.nameServers.isSpecified())
        return 0;
    return cursor.putObject(data.nameServers.get(), QelWriterList(QelIPPrettyWriter(), "name_server"_element),
                            "name_servers"_element);
}

} // namespace

template <> struct Wire<QelIPRange> : WireWords<QelIPRange> {
    static constexpr int nsId = 306, typeId = 134;
    static constexpr QelWireField fields[] = {
        field<&R::start>(1597, required, always),
        step<&readEnd, &writeEnd>("end", "end"_element, ignored, ifSet),
        step<&readPrefix, &writePrefix>("prefix", "netmask"_element, required, ifSet),
    };
};
const QelWireLayout& QelIPRange::wire = wireLayoutOf<QelIPRange>;

template <> struct Wire<QelIPPoolBaseData> : WireWords<QelIPPoolBaseData> {
    static constexpr QelWireField fields[] = {
        field<&R::netmask>(1784, optional, ifSet),
        step<&readNameServers, &writeNameServers>("nameServers", "name_servers"_element, optional, ifSet),
        field<&R::address2050>(2050, optional, ifSet),
    };
};
const QelWireLayout& QelIPPoolBaseData::wire = wireLayoutOf<QelIPPoolBaseData>;

template <> struct Wire<QelIPPool> : WireWords<QelIPPool> {
    static constexpr QelWireField fields[] = {
        base<QelIPPoolBaseData>(),
        field<&R::id>(1010, optional, ifSet),
        field<&R::name>(1026, ignored, ifSet),
        field<&R::description>(1496, optional, ifSet, base64),
        wrapped<&R::ranges>(2160, 1662, optional, ifSet).kept(),
        wrapped<&R::members>(2161, 1010, optional, ifSet).kept(),
        field<&R::disabled>(1705, optional, ifSet).kept(),
    };
};
const QelWireLayout& QelIPPool::wire = wireLayoutOf<QelIPPool>;

template <> struct Wire<QelIPPoolAllocation> : WireWords<QelIPPoolAllocation> {
    static constexpr QelWireField fields[] = {
        base<QelIPPoolBaseData>(),
        field<&R::address>(1262, required, always).bestEffort(),
    };
};
const QelWireLayout& QelIPPoolAllocation::wire = wireLayoutOf<QelIPPoolAllocation>;

template <> struct Wire<QelIPPoolAllocationItem> : WireWords<QelIPPoolAllocationItem> {
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, optional, ifSet),
        field<&R::address>(1262, ignored, always),
        field<&R::time>(1004, ignored, ifSet),
    };
};
const QelWireLayout& QelIPPoolAllocationItem::wire = wireLayoutOf<QelIPPoolAllocationItem>;

template <> struct Wire<QelIPPoolUsage> : WireWords<QelIPPoolUsage> {
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, optional, ifSet),
        field<&R::count>(1259, ignored, always),
        field<&R::value1059>(1059, ignored, always),
        list<&R::allocations>(2178, ignored),
    };
};
const QelWireLayout& QelIPPoolUsage::wire = wireLayoutOf<QelIPPoolUsage>;

template <> struct Wire<QelAllocateIPParams> : WireWords<QelAllocateIPParams> {
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, optional, ifSet),   field<&R::id2182>(2182, optional, ifSet),
        list<&R::ids2183>(2183, optional),      list<&R::addresses>(1262, optional),
        field<&R::time>(1004, ignored, always), field<&R::count>(1259, ignored, always),
    };
};
const QelWireLayout& QelAllocateIPParams::wire = wireLayoutOf<QelAllocateIPParams>;

} // namespace Qel
