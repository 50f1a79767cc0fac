#pragma once

#include <array>
#include <span>
#include <string>

#include "QelFunctionalityCore/Values/RandomValues.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

inline void putInterval(RandomRecord& random, QelMessageIterator& cursor) {
    for (const int end : {1063, 1064})
        cursor.putValueTimeZone(random.time(), static_cast<int>(random.below(28) * 30) - 420, end);
}

inline RandomFill statistic() {
    return inTurn({bigNumberIn(1060), bigNumberIn(1061), bigNumberIn(1062), bigNumberIn(1065)});
}

/// Sequences of named elements, nested by `levels`, with a statistic in each innermost element.
inline RandomFill counters(std::span<const int> levels) {
    if (levels.empty())
        return inChild(1018, statistic());
    return several(3, inChild(levels.front(), inTurn({textIn(1026), counters(levels.subspan(1))})));
}

inline RandomFill monitorData() {
    static constexpr std::array levels{1094, 1905, 1906};
    return inTurn({inChild(1866, identifier()), inChild(1086, putInterval), counters(levels)});
}

inline void putBlock(RandomRecord& random, QelMessageIterator& cursor) {
    std::string bytes(128, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random.below(256));
    cursor.putValueBase64(bytes, 1010);
}

inline RandomFamily randomMonitoring() {
    return {
        .withoutTable{
            {"QelMonitorData", monitorData()},
            {"QelPerfMonActualValue", putBlock},
            {"QelPerfMonHistoricalValue", putBlock},
            {"QelPerfStat", statistic()},
            {"QelTimeInterval", putInterval},
        },
    };
}

} // namespace Qel::TestSupport
