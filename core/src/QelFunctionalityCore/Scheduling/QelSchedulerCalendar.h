#pragma once

#include <set>

#include "QelCommon/Export.h"

namespace Qel {

/// Computes the local time of day of `t`, in seconds since midnight on the wall clock.  Returns -1 and leaves `seconds`
/// unchanged if the local time cannot be represented.
QEL_EXPORT [[nodiscard]] int getRunTime(long t, long& seconds);

/// Advances to the next month in `months`.  Months are 1 for January to 12, years count from 1900.
///
/// Returns -1 and changes nothing if `months` is empty, `month` is not a month or `year` is negative.  If `months`
/// contains no valid month, returns -1 and leaves month and year where the search ended.
QEL_EXPORT [[nodiscard]] int getNextMonth(int& month, int& year, const std::set<int>& months);

} // namespace Qel
