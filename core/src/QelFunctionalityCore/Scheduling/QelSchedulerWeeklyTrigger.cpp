#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"

#include "QelFunctionalityCore/Scheduling/QelSchedulerRunTime.h"
#include "QelFunctionalityCore/Scheduling/QelWeeklyCalculator.h"

namespace Qel {

int QelSchedulerWeeklyTrigger::getNextRunTime(long now, long& next) const {
    constexpr int longestPeriod = 52;
    if (weeks < 1 || weeks > longestPeriod)
        return -1;
    if (isOver(*this, now)) {
        next = qelNoTime;
        return 0;
    }
    if (days.empty())
        return -1;
    next = toRunTimeUntilEnd(*this, Weekly::Calculator(weeks, days).next(now, start));
    return 0;
}

} // namespace Qel
