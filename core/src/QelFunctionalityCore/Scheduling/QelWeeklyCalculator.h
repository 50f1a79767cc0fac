#pragma once

#include <cstdint>
#include <set>

#include <boost/date_time/gregorian/greg_date.hpp>

#include "QelCommon/Export.h"

namespace Qel::Weekly {

/// Computes run days of a task that runs on certain days of every n-th week.
///
/// All dates are in UTC.  Weeks begin on Monday and are numbered from 0 in each year: week 0 contains 1 January, unless
/// that is a Sunday, which then forms week -1.  The weeks whose number is a multiple of the period are active.  The
/// numbering restarts on each 1 January, so the period is broken at the turn of the year.
class QEL_EXPORT Calculator {
public:
    /// `periodInWeeks` is 1 to 52; `weekDays` is not empty.  Week days are normalised by weekDay().
    Calculator(int periodInWeeks, const std::set<int>& weekDays);

    /// Normalises a week day: Sunday, 0 or 7, becomes 7; Monday to Saturday stay 1 to 6.
    [[nodiscard]] static int weekDay(int w);

    /// Returns the first run after `now` at the time of day of `start`; not before `start`.  Times are seconds since
    /// the epoch.  Returns -1 for times outside the years 1400 to 9989, the supported range of dates.
    [[nodiscard]] std::int64_t next(std::int64_t now, std::int64_t start) const;
    /// Returns the first run day on or after `d`, which must be in the years 1400 to 9989.
    [[nodiscard]] boost::gregorian::date next(boost::gregorian::date d) const;

    /// Returns the first run day on or after `d` in days after 1 January.  A result past the end of the year is
    /// invalid: the numbering of the next year applies there.
    [[nodiscard]] int doNext(boost::gregorian::date d) const;
    /// Overload for day `i` of a year, from 0, with week day `w` as returned by weekDay().
    [[nodiscard]] int doNext(int i, int w) const;

    int weeks;
    std::set<int> days;
};

} // namespace Qel::Weekly
