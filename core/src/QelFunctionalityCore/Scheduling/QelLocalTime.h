#pragma once

#include <cstdint>
#include <ctime>

// Local time in 64 bits, whatever the widths of `long` and of the caller's time_t.  It follows the process's time zone,
// which is looked up at each call as localtime() does.

namespace Qel {

/// The length of a day, unless the clocks change.
inline constexpr std::int64_t secondsPerDay = 86400;

/// Value of tm_isdst: standard time, be the season what it may.  A summer midnight that is asked for in standard time
/// is an hour late on the clocks.
///
/// Where winter time is a negative summer time, as in Ireland, standard time is that of the summer: a winter midnight
/// is an hour early on the clocks, on the day before.
inline constexpr int standardTime = 0;
/// Value of tm_isdst: the time that the clocks show.
inline constexpr int clockTime = -1;

/// Breaks `time`, in seconds since the epoch, down into local time.  -1, and `out` unchanged, where the calendar
/// doesn't reach.
[[nodiscard]] int localTimeCopy(std::int64_t time, std::tm& out);

/// Normalises a date of the Gregorian calendar, without regard to time zones: months and days beyond the end roll over,
/// and `tm_wday` and `tm_yday` are set.  `year` counts from 1900, `month` from 0 and `day` from 1.  -1, and `out`
/// unchanged, if the year does not fit.
[[nodiscard]] int makeDate(int year, int month, int day, std::tm& out);

/// The local midnight that begins a day, in seconds since the epoch.  `year` counts from 1900, `month` from 0 and `day`
/// from 1; months and days beyond the end roll over.  -1, and `time` unchanged, where the calendar doesn't reach.
[[nodiscard]] int makeLocalMidnight(int year, int month, int day, int isDst, std::int64_t& time);

} // namespace Qel
