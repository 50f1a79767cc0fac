#pragma once

#include <array>
#include <string>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

inline RandomFill identifier() {
    return [](RandomRecord& random, QelMessageIterator& cursor) {
        cursor.putObj(QelGUID(static_cast<long long>(random.bits()), static_cast<long long>(random.bits())), 0);
    };
}

inline void putAddress(RandomRecord& random, QelMessageIterator& cursor) {
    static constexpr std::array<const char*, 5> addresses{"10.0.0.1", "2001:db8::1", "::", "", "no address"};
    static constexpr std::array<const char*, 6> masks{"24", "255.255.0.0", "64", "", "no mask", "99"};
    if (random.below(2) == 0)
        cursor.putValue(std::string(masks[random.below(masks.size())]), 1784);
    cursor.putValue(std::string(addresses[random.below(addresses.size())]), 1262);
}

inline RandomFamily randomValues() {
    return {
        .withoutTable{
            {"QelGUID", identifier()},
            {"QelEID", identifier()},
            {"QelEIDList", several(3, inChild(1866, identifier()))},
            {"QelIPAddress", putAddress},
            {"QelNamedOpStrListProperty", inTurn({numberIn(1638, 0, 2), textIn(1026), several(3, textIn(1018))})},
        },
    };
}

} // namespace Qel::TestSupport
