#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"

#include <cstdlib>
#include <optional>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerRunTime.h"

namespace Qel {

namespace {

constexpr int sunday = 0;
constexpr int saturday = 6;

// Returns the first time `start` + k * `step` after `now`, which must not be before `start`.  With a negative step, the
// result is before `now`.  Returns nullopt on 64-bit overflow.
std::optional<std::int64_t> addSteps(std::int64_t start, std::int64_t now, std::int64_t step) {
    // Unsigned: the difference may need all 64 bits.
    const std::uint64_t elapsed = static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(start);
    const auto sinceStep = static_cast<std::int64_t>(elapsed % static_cast<std::uint64_t>(std::abs(step)));
    std::int64_t next = 0;
    if (__builtin_add_overflow(now - sinceStep, step, &next))
        return std::nullopt;
    return next;
}

} // namespace

int QelSchedulerDailyTrigger::getNextRunTime(long now, long& next) const {
    if (const auto result = resultWithoutCalendar(*this, now, next))
        return *result;
    if (start > now) {
        next = start;
        return 0;
    }
    if (interval.isSpecified() && interval.get() != 0) {
        const auto run = addSteps(start, now, interval.get() * secondsPerDay);
        next = run ? toRunTimeUntilEnd(*this, *run) : qelNoTime;
        return 0;
    }
    const auto nextDay = addSteps(start, now, secondsPerDay);
    std::tm local{};
    if (!nextDay || localTimeCopy(*nextDay, local) != 0)
        return -1;
    std::int64_t run = *nextDay;
    if (weekdaysOnly) {
        if (local.tm_wday == sunday)
            run += secondsPerDay;
        else if (local.tm_wday == saturday)
            run += 2 * secondsPerDay;
    } else if (local.tm_wday != sunday) {
        // Weekends only; `weekendsOnly` is not evaluated.  Advances to the next Saturday, unless this day is one.
        run += (saturday - local.tm_wday) * secondsPerDay;
    }
    next = toRunTimeUntilEnd(*this, run);
    return 0;
}

} // namespace Qel
