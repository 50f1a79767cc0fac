#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// A trigger's answer for its caller: a time that a long can't hold is no time.
[[nodiscard]] constexpr long toAnswer(std::int64_t time) {
    return std::in_range<long>(time) ? static_cast<long>(time) : qelNoTime;
}

/// The same, where the time must not lie behind the trigger's end.
[[nodiscard]] inline long toAnswerUntil(const QelSchedulerTrigger& trigger, std::int64_t time) {
    return trigger.end != qelNoTime && time > trigger.end ? qelNoTime : toAnswer(time);
}

/// Whether the trigger's end has passed.
[[nodiscard]] inline bool isOver(const QelSchedulerTrigger& trigger, long now) {
    return trigger.end != qelNoTime && trigger.end < now;
}

/// The result where the calendar needn't be asked: a negative time has no answer, and a trigger that is over no more
/// runs.  Nothing otherwise.
[[nodiscard]] inline std::optional<int> answerAtOnce(const QelSchedulerTrigger& trigger, long now, long& next) {
    if (now < 0)
        return -1;
    if (!isOver(trigger, now))
        return std::nullopt;
    next = qelNoTime;
    return 0;
}

} // namespace Qel
