#include "QelFunctionalityCore/Scheduling/QelSchedulerCalendar.h"

#include <limits>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"

namespace Qel {

namespace {

constexpr int january = 1;
constexpr int december = 12;
constexpr int maxYears = 3; ///< limit of the search for a month, in changes of the year

// Returns whether the year changed.
bool stepMonth(int& month, int& year) {
    if (month < december) {
        ++month;
        return false;
    }
    month = january;
    ++year;
    return true;
}

} // namespace

int getRunTime(long t, long& seconds) {
    std::tm local{};
    if (localTimeCopy(t, local) != 0)
        return -1;
    seconds = local.tm_hour * 3600L + local.tm_min * 60L + local.tm_sec;
    return 0;
}

int getNextMonth(int& month, int& year, const std::set<int>& months) {
    constexpr int lastYear = std::numeric_limits<int>::max() - maxYears - 1;
    if (months.empty() || month < january || month > december || year < 0 || year > lastYear)
        return -1;
    stepMonth(month, year); // a change of the year in this step is not counted
    for (int turns = 0; !months.contains(month);)
        if (stepMonth(month, year) && ++turns == maxYears)
            return -1;
    return 0;
}

} // namespace Qel
