#include "QelFunctionalityCore/Network/QelIPPool.h"

#include "QelFunctionalityCore/Values/QelIPFunctors.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int endElement = 1663;
constexpr int prefixElement = 1784;
constexpr int nameServersElement = 1708;
constexpr int nameServerElement = 1281;

int readEnd(const QelMessageIterator& cursor, QelIPRange& addresses) {
    return cursor.getObject(addresses.end, QelIPReader(), endElement);
}
int writeEnd(QelMessageIterator& cursor, const QelIPRange& addresses) {
    if (addresses.prefix != 0)
        return 0;
    return addresses.end.isAny() ? -1 : cursor.putObject(addresses.end, QelIPWriter(), endElement);
}

// QelIPReader accepts a mask as well as a plain number.
int readPrefix(const QelMessageIterator& cursor, QelIPRange& addresses) {
    cursor.getObject(addresses.prefix, QelIPReader(), prefixElement);
    return addresses.prefix == 0 && addresses.end.isAny() ? -1 : 0;
}
int writePrefix(QelMessageIterator& cursor, const QelIPRange& addresses) {
    if (addresses.prefix == 0)
        return 0;
    if (addresses.prefix <= QelIPv6::bits)
        return cursor.putValue(static_cast<int>(addresses.prefix), prefixElement);
    return cursor.putObject(addresses.prefix, QelIPWriter(), prefixElement);
}

int readNameServers(const QelMessageIterator& cursor, QelIPPoolBaseData& data) {
    if (cursor.seekPresence(nameServersElement) != 0)
        return 0;
    const auto readItems = QelReaderList(QelIPReader(), nameServerElement, QelReaderOptional);
    const int result = cursor.getObject(data.nameServers.get(), readItems, nameServersElement);
    data.nameServers.specify(result == 0);
    return result;
}
// IPv4 addresses are written in dotted form for agents without IPv6 support.
int writeNameServers(QelMessageIterator& cursor, const QelIPPoolBaseData& data) {
    if (!data.nameServers.isSpecified())
        return 0;
    return cursor.putObject(data.nameServers.get(), QelWriterList(QelIPPrettyWriter(), nameServerElement),
                            nameServersElement);
}

} // namespace

template <> struct Wire<QelIPRange> : WireWords<QelIPRange> {
    static constexpr int nsId = 306, typeId = 134;
    static constexpr QelWireField fields[] = {
        field<&QelIPRange::start>(1597, required, always),
        step<&readEnd, &writeEnd>("end", endElement, ignored, ifSet),
        step<&readPrefix, &writePrefix>("prefix", prefixElement, required, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelIPRange>() {
    return wireLayoutOf<QelIPRange>;
}

template <> struct Wire<QelIPPoolBaseData> : WireWords<QelIPPoolBaseData> {
    static constexpr QelWireField fields[] = {
        field<&QelIPPoolBaseData::netmask>(1784, optional, ifSet),
        step<&readNameServers, &writeNameServers>("nameServers", nameServersElement, optional, ifSet),
        field<&QelIPPoolBaseData::address2050>(2050, optional, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelIPPoolBaseData>() {
    return wireLayoutOf<QelIPPoolBaseData>;
}

template <> struct Wire<QelIPPool> : WireWords<QelIPPool> {
    static constexpr QelWireField fields[] = {
        base<QelIPPoolBaseData>(),
        field<&QelIPPool::id>(1010, optional, ifSet),
        field<&QelIPPool::name>(1026, ignored, ifSet),
        field<&QelIPPool::description>(1496, optional, ifSet, base64),
        wrapped<&QelIPPool::ranges>(2160, 1662, optional, ifSet).kept(),
        wrapped<&QelIPPool::members>(2161, 1010, optional, ifSet).kept(),
        field<&QelIPPool::disabled>(1705, optional, ifSet).kept(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelIPPool>() {
    return wireLayoutOf<QelIPPool>;
}

template <> struct Wire<QelIPPoolAllocation> : WireWords<QelIPPoolAllocation> {
    static constexpr QelWireField fields[] = {
        base<QelIPPoolBaseData>(),
        field<&QelIPPoolAllocation::address>(1262, required, always).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelIPPoolAllocation>() {
    return wireLayoutOf<QelIPPoolAllocation>;
}

template <> struct Wire<QelIPPoolAllocationItem> : WireWords<QelIPPoolAllocationItem> {
    static constexpr QelWireField fields[] = {
        field<&QelIPPoolAllocationItem::id>(1010, optional, ifSet),
        field<&QelIPPoolAllocationItem::address>(1262, ignored, always),
        field<&QelIPPoolAllocationItem::time>(1004, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelIPPoolAllocationItem>() {
    return wireLayoutOf<QelIPPoolAllocationItem>;
}

template <> struct Wire<QelIPPoolUsage> : WireWords<QelIPPoolUsage> {
    static constexpr QelWireField fields[] = {
        field<&QelIPPoolUsage::id>(1010, optional, ifSet),
        field<&QelIPPoolUsage::count>(1259, ignored, always),
        field<&QelIPPoolUsage::value1059>(1059, ignored, always),
        list<&QelIPPoolUsage::allocations>(2178, ignored),
    };
};
template <> const QelWireLayout& qelWireLayout<QelIPPoolUsage>() {
    return wireLayoutOf<QelIPPoolUsage>;
}

template <> struct Wire<QelAllocateIPParams> : WireWords<QelAllocateIPParams> {
    static constexpr QelWireField fields[] = {
        field<&QelAllocateIPParams::id>(1010, optional, ifSet),
        field<&QelAllocateIPParams::id2182>(2182, optional, ifSet),
        list<&QelAllocateIPParams::ids2183>(2183, optional),
        list<&QelAllocateIPParams::addresses>(1262, optional),
        field<&QelAllocateIPParams::time>(1004, ignored, always),
        field<&QelAllocateIPParams::count>(1259, ignored, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelAllocateIPParams>() {
    return wireLayoutOf<QelAllocateIPParams>;
}

} // namespace Qel
