#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"

#include <algorithm>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerCalendar.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthly.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerRunTime.h"

namespace Qel {

int QelSchedulerMonthlyTrigger::getNextRunTime(long now, long& next) const {
    if (const auto result = resultWithoutCalendar(*this, now, next))
        return *result;
    long timeOfDay = 0;
    std::tm first{};
    std::tm present{};
    if (days.empty() || months.empty() || getRunTime(start, timeOfDay) != 0 || localTimeCopy(start, first) != 0 ||
        localTimeCopy(now, present) != 0)
        return -1;
    // The search begins in the month of the start, but not before the current year.
    first.tm_year = std::max(first.tm_year, present.tm_year);

    if (months.contains(first.tm_mon + 1)) {
        std::int64_t monthStart = 0;
        if (findMonthStart(start, first, timeOfDay, monthStart) != 0)
            return -1;
        const QelSchedulerMonthDuration runs(monthStart, days);
        if (!runs.isValid())
            return -1;
        if (const std::int64_t run = runs.getNextRunTime(now); run != runs.end) {
            next = toRunTime(run);
            return 0;
        }
    }

    std::int64_t monthStart = 0;
    if (findNextMonthStart(first, months, timeOfDay, monthStart) != 0)
        return -1;
    const QelSchedulerMonthDuration runs(monthStart, days);
    if (!runs.isValid())
        return -1;
    next = toRunTimeUntilEnd(*this, runs.getNextRunTime(now));
    return 0;
}

} // namespace Qel
