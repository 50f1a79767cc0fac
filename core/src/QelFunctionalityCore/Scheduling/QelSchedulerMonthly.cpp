#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthly.h"

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerCalendar.h"

namespace Qel {

int findMonthStart(std::int64_t from, const std::tm& month, long timeOfDay, std::int64_t& monthStart) {
    int last = 0;
    if (QelSchedulerMonthDuration::getLastDayOfMonth(month.tm_mon, month.tm_year, last) != 0)
        return -1;
    const QelSchedulerMonthDuration rest(from, last);
    if (!rest.isValid())
        return -1;
    monthStart = rest.end - last * secondsPerDay + timeOfDay;
    return 0;
}

int findNextMonthStart(const std::tm& month, const std::set<int>& months, long timeOfDay, std::int64_t& monthStart) {
    int nextMonth = month.tm_mon + 1;
    int year = month.tm_year;
    std::int64_t midnight = 0;
    if (getNextMonth(nextMonth, year, months) != 0 ||
        makeLocalMidnight(year, nextMonth - 1, 1, standardTime, midnight) != 0)
        return -1;
    monthStart = midnight + timeOfDay;
    return 0;
}

} // namespace Qel
