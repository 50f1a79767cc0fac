#pragma once

#include <ostream>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// What a trigger answers.
struct TriggerAnswer {
    int result;
    long next;
    friend bool operator==(const TriggerAnswer&, const TriggerAnswer&) = default;
};

inline std::ostream& operator<<(std::ostream& out, const TriggerAnswer& answer) {
    return out << "result " << answer.result << ", next " << answer.next;
}

/// What `next` holds before a trigger is asked.
inline constexpr long untouchedNext = -77;

inline constexpr TriggerAnswer noMoreRuns{0, -1};
inline constexpr TriggerAnswer noAnswer{-1, untouchedNext};

[[nodiscard]] inline TriggerAnswer runAt(long time) {
    return {0, time};
}

[[nodiscard]] inline TriggerAnswer ask(const QelSchedulerTrigger& trigger, long now) {
    TriggerAnswer answer{0, untouchedNext};
    answer.result = trigger.getNextRunTime(now, answer.next);
    return answer;
}

} // namespace Qel
