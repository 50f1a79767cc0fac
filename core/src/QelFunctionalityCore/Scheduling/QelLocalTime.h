#pragma once

#include <cstdint>
#include <ctime>

#include "QelCommon/Export.h"

// Local time in 64 bits, independent of the widths of `long` and of the caller's time_t.  Uses the process's time zone,
// which is re-evaluated on each call as in localtime().

namespace Qel {

/// Length of a day without a clock change.
inline constexpr std::int64_t secondsPerDay = 86400;

/// Value of tm_isdst: standard time in every season.  A summer midnight in standard time is 01:00 on the wall clock.
///
/// In zones with negative daylight saving time, such as Ireland, standard time is that of the summer: a winter midnight
/// is 23:00 on the wall clock, of the previous day.
inline constexpr int standardTime = 0;
/// Value of tm_isdst: wall clock time.
inline constexpr int clockTime = -1;

/// Converts `time`, in seconds since the epoch, to local time.  Returns -1 and leaves `out` unchanged if the year does
/// not fit.
QEL_EXPORT [[nodiscard]] int localTimeCopy(std::int64_t time, std::tm& out);

/// Normalises a date of the Gregorian calendar, ignoring time zones: out-of-range months and days roll over, and
/// `tm_wday` and `tm_yday` are set.  `year` counts from 1900, `month` from 0 and `day` from 1.  Returns -1 and leaves
/// `out` unchanged if the year does not fit.
QEL_EXPORT [[nodiscard]] int makeDate(int year, int month, int day, std::tm& out);

/// Computes the local midnight at the start of a day, in seconds since the epoch.  `year` counts from 1900, `month`
/// from 0 and `day` from 1; out-of-range months and days roll over.  Returns -1 and leaves `time` unchanged if it
/// cannot be represented.
QEL_EXPORT [[nodiscard]] int makeLocalMidnight(int year, int month, int day, int isDst, std::int64_t& time);

} // namespace Qel
