#include "QelFunctionalityCore/Scheduling/QelSchedulerWeekDuration.h"

#include <algorithm>
#include <cstddef>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"

namespace Qel {

namespace {

constexpr int sunday = 0;
constexpr int daysPerWeek = 7;

// The Monday after the week of `start`.  For a Sunday, this is eight days later: the week after next.
int findNextMonday(const std::tm& start, std::int64_t& time) {
    const int monday = start.tm_mday - start.tm_wday + daysPerWeek + 1;
    return makeLocalMidnight(start.tm_year, start.tm_mon, monday, start.tm_isdst, time);
}

} // namespace

QelSchedulerWeekDuration::QelSchedulerWeekDuration(std::int64_t start, const std::set<int>& weekDays)
    : QelSchedulerPeriodDuration(start, daysPerWeek * secondsPerDay) {
    addDays(weekDays);
}

void QelSchedulerWeekDuration::addDays(const std::set<int>& weekDays) {
    std::tm local{};
    if (!isValid() || localTimeCopy(begin, local) != 0)
        return setInvalid();
    days.reserve(std::min<std::size_t>(weekDays.size(), daysPerWeek));
    std::int64_t dayBegin = begin;
    for (int weekDay = local.tm_wday; weekDay != sunday; weekDay = (weekDay + 1) % daysPerWeek) {
        if (weekDays.contains(weekDay))
            days.emplace_back(dayBegin, weekDay, secondsPerDay);
        dayBegin += secondsPerDay;
    }
    if (weekDays.contains(sunday)) {
        if (findNextMonday(local, end) != 0)
            return setInvalid();
        days.emplace_back(dayBegin, sunday, end - dayBegin);
    }
    finish();
}

} // namespace Qel
