#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "TimeZones.h"

namespace Qel {

/// A date that is reached by walking from 1 January 1970 day by day.
///
/// Slow on purpose and without the C library: what it says about dates is an independent second opinion.
struct SlowDate {
    int year = 1970;
    int month = 1;
    int day = 1;
    int weekDay = 4;    ///< 0 for Sunday
    int weekOfYear = 0; ///< the week of 1 January is 0; a Monday begins the next
    long number = 0;    ///< days since the epoch

    [[nodiscard]] int lengthOfMonth() const {
        if (month == 2)
            return year % 4 == 0 ? 29 : 28; // none of the tests' years is a common century
        return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    }
    [[nodiscard]] bool isLastOfMonth() const { return day == lengthOfMonth(); }

    void step() {
        ++number;
        weekDay = (weekDay + 1) % 7;
        if (!isLastOfMonth()) {
            ++day;
        } else {
            day = 1;
            month = month == 12 ? 1 : month + 1;
            year += month == 1;
        }
        if (month == 1 && day == 1)
            weekOfYear = weekDay == 0 ? -1 : 0; // a Sunday is the end of a week that isn't this year's
        else if (weekDay == 1)
            ++weekOfYear;
    }
};

/// Every date from 1970 to 2041, each found from the one before.
inline const std::vector<SlowDate>& slowDates() {
    static const std::vector<SlowDate> dates = [] {
        std::vector<SlowDate> walked;
        for (SlowDate date; date.year < 2042; date.step())
            walked.push_back(date);
        return walked;
    }();
    return dates;
}

/// The first time after `after` at second `timeOfDay` of a date that `isRunDay` names, by clocks that are `offset`
/// seconds ahead of UTC all year round.  Nothing within `longest` days.
inline std::optional<long> walkToRun(long after, long timeOfDay, long offset,
                                     const std::function<bool(const SlowDate&)>& isRunDay, std::size_t longest = 1500) {
    const auto& dates = slowDates();
    const auto first = static_cast<std::size_t>((after + offset) / testDay - 1);
    for (std::size_t i = first; i < std::min(first + longest, dates.size()); ++i) {
        const long run = dates[i].number * testDay + timeOfDay - offset;
        if (run > after && isRunDay(dates[i]))
            return run;
    }
    return std::nullopt;
}

/// Whether a month has a day that `isDay` names.
inline bool hasDay(int year, int month, const std::function<bool(const SlowDate&)>& isDay) {
    const auto& dates = slowDates();
    for (auto i = static_cast<std::size_t>(year - 1970) * 365; dates[i].year <= year; ++i)
        if (dates[i].year == year && dates[i].month == month && isDay(dates[i]))
            return true;
    return false;
}

} // namespace Qel
