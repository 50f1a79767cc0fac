#pragma once

#include <array>
#include <string>

#include "QelCore/QelIPConversions.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// An address that a pool can contain, often adjacent to another one.
inline unsigned poolAddress(RandomRecord& random) {
    return 0x0A000001U + random.below(40);
}
inline RandomFill poolAddressIn(int id) {
    return
        [id](RandomRecord& random, QelMessageIterator& cursor) { cursor.putValue(ipToStr(poolAddress(random)), id); };
}

inline void putPoolRange(RandomRecord& random, QelMessageIterator& cursor) {
    if (random.below(2) == 0) {
        poolAddressIn(1262)(random, cursor);
        return;
    }
    cursor.newChild(1662);
    const unsigned start = poolAddress(random);
    cursor.putValue(ipToStr(start), 1597);
    cursor.putValue(ipToStr(start + random.below(4)), 1663);
    cursor.seekUp();
}

/// A prefix, or a mask as a number or an address; empty only if the range has an end.
inline void putPrefix(RandomRecord& random, QelMessageIterator& cursor) {
    static constexpr std::array<const char*, 5> prefixes{"24", "128", "4294967040", "255.255.255.0", "1"};
    if (cursor.seekPresence(1663) != 0 || random.below(2) == 0)
        cursor.putValue(std::string(prefixes[random.below(prefixes.size())]), 1784);
}

inline void putNameServer(RandomRecord& random, QelMessageIterator& cursor) {
    cursor.putValue(random.below(2) == 0 ? ipToStr(poolAddress(random)) : "2001:db8::53", 1281);
}

inline void putKind(RandomRecord& random, QelMessageIterator& cursor) {
    cursor.putChild(random.below(2) == 0 ? 1758 : 2133);
}

inline void putPoolType(RandomRecord& random, QelMessageIterator& cursor) {
    cursor.putValue(random.below(2) == 0 ? "resource_ip" : "", 1007);
}

/// A cell of a row set with its string in element `id`.
inline RandomFill cell(int id) {
    return [id](RandomRecord& random, QelMessageIterator& cursor) {
        if (random.below(3) == 0) {
            several(2, inChild(1082, cell(id)))(random, cursor);
            return;
        }
        cursor.newChild(id);
        random.putText(cursor, id == 1018);
        cursor.seekUp();
    };
}

/// Returns whether a subtree contains the minimum or maximum address, which no pool can contain.
inline bool holdsExtremeAddress(const QelMessageIterator& cursor) {
    if (cursor.curID() == 1262) {
        std::string text;
        cursor.getValue(text, 0);
        const unsigned address = strToIp(text);
        if (address == 0 || ~address == 0)
            return true;
    }
    if (cursor.firstChild() != 0)
        return false;
    bool found = false;
    do
        found = holdsExtremeAddress(cursor);
    while (!found && cursor.nextSibling() == 0);
    cursor.seekUp();
    return found;
}

inline bool holdsText(const QelMessageIterator& cursor) {
    return cursor.seekPresence(1195) == 0;
}

inline RandomFamily randomNetwork() {
    constexpr RecordExceptions holdsPool{.isFatal = holdsExtremeAddress};
    constexpr RecordExceptions isDevice{.keepsPositionOnFailure = true}; // at an unknown kind
    return {
        .withoutTable{
            {"QelNetDevice", record("QelNetDevice")},
            {"QelResource", oneOf({"QelResource", "QelResourceIp"})},
            {"QelResourcePool", oneOf({"QelResourcePool", "QelResourceIpPool"})},
            {"QelStringTree<1018, true>", cell(1018)},
            {"QelStringTree<1026, false>", cell(1026)},
        },
        .fields{
            {{"QelFirewallRule", 1195}, textIn(1195, "text ")}, // an empty one is required but not written
            {{"QelIPPoolBaseData", 1708}, inChild(1708, several(2, putNameServer))},
            {{"QelIPRange", 1663}, poolAddressIn(1663)},
            {{"QelIPRange", 1784}, putPrefix},
            {{"QelNetDevice", 1192}, inChild(1192, putKind)},
            {{"QelPagerSortCondition", 1378}, inChild(1378, nothing())},
            {{"QelResourceIpPool", 1662}, several(4, putPoolRange)},
            {{"QelResourceIp", 1262}, poolAddressIn(1262)},
            {{"QelResourcePool", 1007}, putPoolType},
            {{"QelRowSet", 1739}, several(2, inChild(1739, several(3, inChild(1082, cell(1018)))))},
            {{"QelRowSet", 1259}, numberIn(1259)},
            {{"QelRowSet", 1040}, numberIn(1040)},
        },
        .exceptions{
            {"QelFirewallRule", {.isReadable = holdsText}},
            {"QelNetBridge", isDevice},
            {"QelNetDevice", isDevice},
            {"QelNetNIC", isDevice},
            {"QelNetVLAN", isDevice},
            {"QelPoolResourcePair", holdsPool},
            {"QelResourceIpPool", holdsPool},
        },
    };
}

} // namespace Qel::TestSupport
