#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Converts a computed run time to the result of a trigger; qelNoTime if it does not fit in a long.
[[nodiscard]] constexpr long toRunTime(std::int64_t time) {
    return std::in_range<long>(time) ? static_cast<long>(time) : qelNoTime;
}

/// Like toRunTime(), but also qelNoTime if the time is after the trigger's end.
[[nodiscard]] inline long toRunTimeUntilEnd(const QelSchedulerTrigger& trigger, std::int64_t time) {
    return trigger.end != qelNoTime && time > trigger.end ? qelNoTime : toRunTime(time);
}

/// Returns whether the trigger's end has passed.
[[nodiscard]] inline bool isOver(const QelSchedulerTrigger& trigger, long now) {
    return trigger.end != qelNoTime && trigger.end < now;
}

/// Handles the cases that need no calendar: a negative time is an error, and a trigger whose end has passed has no more
/// runs.  Otherwise returns nullopt.
[[nodiscard]] inline std::optional<int> resultWithoutCalendar(const QelSchedulerTrigger& trigger, long now,
                                                              long& next) {
    if (now < 0)
        return -1;
    if (!isOver(trigger, now))
        return std::nullopt;
    next = qelNoTime;
    return 0;
}

} // namespace Qel
