#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthly.h"

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerCalendar.h"

namespace Qel {

namespace {

// Computes the first of `month` at `timeOfDay`, relative to `midnight`, the start of the month in standard time.
//
// With negative daylight saving time (Irish winter), the wall clock shows the previous month at that midnight.  A time
// of day in the first hour would then belong to the previous month, and a span that starts there would contain the
// wrong days.  Such a time of day is therefore counted from midnight on the wall clock.
int findFirstOfMonth(std::int64_t midnight, int month, long timeOfDay, std::int64_t& monthStart) {
    std::int64_t first = midnight + timeOfDay;
    std::tm local{};
    if (localTimeCopy(first, local) != 0)
        return -1;
    if (local.tm_mon != month) {
        if (makeLocalMidnight(local.tm_year, local.tm_mon + 1, 1, clockTime, first) != 0)
            return -1;
        first += timeOfDay;
    }
    monthStart = first;
    return 0;
}

} // namespace

int findMonthStart(std::int64_t from, const std::tm& month, long timeOfDay, std::int64_t& monthStart) {
    int last = 0;
    if (QelSchedulerMonthDuration::getLastDayOfMonth(month.tm_mon, month.tm_year, last) != 0)
        return -1;
    const QelSchedulerMonthDuration rest(from, last);
    if (!rest.isValid())
        return -1;
    return findFirstOfMonth(rest.end - last * secondsPerDay, month.tm_mon, timeOfDay, monthStart);
}

int findNextMonthStart(const std::tm& month, const std::set<int>& months, long timeOfDay, std::int64_t& monthStart) {
    int nextMonth = month.tm_mon + 1;
    int year = month.tm_year;
    std::int64_t midnight = 0;
    if (getNextMonth(nextMonth, year, months) != 0 ||
        makeLocalMidnight(year, nextMonth - 1, 1, standardTime, midnight) != 0)
        return -1;
    return findFirstOfMonth(midnight, nextMonth - 1, timeOfDay, monthStart);
}

} // namespace Qel
