#pragma once

#include <set>

namespace Qel {

/// The local time of day of `t`, in seconds since midnight by the clocks.  -1, and `seconds` unchanged, where the
/// calendar doesn't reach.
[[nodiscard]] int getRunTime(long t, long& seconds);

/// Goes on to the next month that `months` holds.  Months count from 1 for January to 12, years from 1900.
///
/// -1, and nothing changed, if `months` is empty, `month` is none or `year` is negative.  -1, and month and year where
/// the search ended, if `months` holds no month.
[[nodiscard]] int getNextMonth(int& month, int& year, const std::set<int>& months);

} // namespace Qel
