#pragma once

#include <cstdint>
#include <set>

#include <boost/date_time/gregorian/greg_date.hpp>

namespace Qel::Weekly {

/// Finds run days of a task that runs on certain days of every n-th week.
///
/// All dates are in UTC.  Weeks run from Monday to Sunday and count from 0 in each year: week 0 holds 1 January, unless
/// that is a Sunday, which is then week -1 by itself.  The weeks whose number is a multiple of the period are active.
/// The count starts afresh on each 1 January, so that the turn of the year breaks the period.
class Calculator {
public:
    /// `periodInWeeks` is 1 to 52, `weekDays` isn't empty.  Week days are taken as weekDay() has them.
    Calculator(int periodInWeeks, const std::set<int>& weekDays);

    /// Sunday, 0 or 7, becomes 7; Monday to Saturday stay 1 to 6.
    [[nodiscard]] static int weekDay(int w);

    /// The first run after `now`, at the time of day of `start`, and if `now` lies before `start`, not before it. Times
    /// are seconds since the epoch.  -1 for times beyond the years 1400 to 9989, which the dates don't reach.
    [[nodiscard]] std::int64_t next(std::int64_t now, std::int64_t start) const;
    /// The first run day that isn't before `d`, which lies in the years 1400 to 9989.
    [[nodiscard]] boost::gregorian::date next(boost::gregorian::date d) const;

    /// The same as days after 1 January.  It may lie in the next year, whose own count of weeks then holds instead.
    [[nodiscard]] int doNext(boost::gregorian::date d) const;
    /// The same for day `i` of a year, from 0, that is a week day `w` in the numbering of weekDay().
    [[nodiscard]] int doNext(int i, int w) const;

    int weeks;
    std::set<int> days;
};

} // namespace Qel::Weekly
