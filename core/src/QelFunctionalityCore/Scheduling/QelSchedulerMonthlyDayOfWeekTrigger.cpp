#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"

#include <algorithm>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerCalendar.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthly.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerRunTime.h"

namespace Qel {

int QelSchedulerMonthlyDayOfWeekTrigger::getNextRunTime(long now, long& next) const {
    if (const auto result = resultWithoutCalendar(*this, now, next))
        return *result;
    // Starts at the current month, unlike QelSchedulerMonthlyTrigger.
    const long from = std::max(start, now);
    long timeOfDay = 0;
    std::tm month{};
    if (weekDays.empty() || weekNumbers.empty() || months.empty() || getRunTime(start, timeOfDay) != 0 ||
        localTimeCopy(from, month) != 0)
        return -1;

    if (months.contains(month.tm_mon + 1)) {
        std::int64_t monthStart = 0;
        if (findMonthStart(from, month, timeOfDay, monthStart) != 0)
            return -1;
        const QelSchedulerMonthDuration runs(monthStart, weekDays, weekNumbers);
        if (!runs.isValid())
            return -1;
        // If this run is not after the start, the rest of the month is skipped.
        if (const std::int64_t run = runs.getNextRunTime(now); run != runs.end && run > start) {
            next = toRunTime(run);
            return 0;
        }
    }

    std::int64_t monthStart = 0;
    if (findNextMonthStart(month, months, timeOfDay, monthStart) != 0)
        return -1;
    const QelSchedulerMonthDuration runs(monthStart, weekDays, weekNumbers);
    if (!runs.isValid())
        return -1;
    // Neither here nor above is the run compared with the end of the trigger.
    next = toRunTime(runs.getNextRunTime(now));
    return 0;
}

} // namespace Qel
