#pragma once

#include <ctime>
#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthDuration.h"

// Common code of the two monthly triggers.

namespace Qel {

/// Computes the first day of a month at a time of day (seconds since midnight), counting back from the end of the month
/// that contains `from`.  The number of days counted back is the length of `month`, which may be a different month.
/// Returns -1 and leaves `monthStart` unchanged if the day of `from` is past the last day of `month`, or a date is out
/// of range.
[[nodiscard]] int findMonthStart(std::int64_t from, const std::tm& month, long timeOfDay, std::int64_t& monthStart);

/// Computes the first day, at a time of day, of the next month after `month` that is in `months` (1 to 12).  Returns -1
/// and leaves `monthStart` unchanged if there is none.
[[nodiscard]] int findNextMonthStart(const std::tm& month, const std::set<int>& months, long timeOfDay,
                                     std::int64_t& monthStart);

} // namespace Qel
