#pragma once

#include <ostream>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Result of QelSchedulerTrigger::getNextRunTime().
struct TriggerResult {
    int result;
    long next;
    friend bool operator==(const TriggerResult&, const TriggerResult&) = default;
};

inline std::ostream& operator<<(std::ostream& out, const TriggerResult& result) {
    return out << "result " << result.result << ", next " << result.next;
}

/// Value of `next` before the call.
inline constexpr long unchangedNext = -77;

inline constexpr TriggerResult noMoreRuns{0, -1};
inline constexpr TriggerResult failure{-1, unchangedNext};

[[nodiscard]] inline TriggerResult runAt(long time) {
    return {0, time};
}

[[nodiscard]] inline TriggerResult nextRun(const QelSchedulerTrigger& trigger, long now) {
    TriggerResult result{0, unchangedNext};
    result.result = trigger.getNextRunTime(now, result.next);
    return result;
}

} // namespace Qel
