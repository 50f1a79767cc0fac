#pragma once

#include <ctime>
#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthDuration.h"

// What the two monthly triggers share.

namespace Qel {

/// The first of a month at a time of day, in seconds since midnight, as it follows from the end of the month that
/// `from` lies in.  The days between the two are counted for `month`, which may be another month than that of `from`.
/// -1, and `monthStart` unchanged, if `from` lies in its month behind what is the last day of `month`, and where the
/// calendar doesn't reach.
[[nodiscard]] int findMonthStart(std::int64_t from, const std::tm& month, long timeOfDay, std::int64_t& monthStart);

/// The first of the next month behind `month` that `months`, from 1 to 12, holds, at a time of day.  -1, and
/// `monthStart` unchanged, if there is none.
[[nodiscard]] int findNextMonthStart(const std::tm& month, const std::set<int>& months, long timeOfDay,
                                     std::int64_t& monthStart);

} // namespace Qel
