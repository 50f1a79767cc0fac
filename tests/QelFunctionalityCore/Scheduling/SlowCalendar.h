#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "TimeZones.h"

namespace Qel {

/// A date computed by counting days from 1 January 1970.  Deliberately slow and independent of the C library: a
/// reference implementation.
struct SlowDate {
    int year = 1970;
    int month = 1;
    int day = 1;
    int weekDay = 4;    ///< 0 for Sunday
    int weekOfYear = 0; ///< 0 contains 1 January; weeks begin on Monday
    long number = 0;    ///< days since the epoch

    [[nodiscard]] int lengthOfMonth() const {
        if (month == 2)
            return year % 4 == 0 ? 29 : 28; // the tests use no year in which the century rule matters
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
            weekOfYear = weekDay == 0 ? -1 : 0; // a Sunday ends a week of the previous year
        else if (weekDay == 1)
            ++weekOfYear;
    }
};

/// All dates from 1970 to 2041.
inline const std::vector<SlowDate>& slowDates() {
    static const std::vector<SlowDate> dates = [] {
        std::vector<SlowDate> walked;
        for (SlowDate date; date.year < 2042; date.step())
            walked.push_back(date);
        return walked;
    }();
    return dates;
}

/// Returns the first run after `after`: a date accepted by `isRunDay` at `timeOfDay`, in a zone that is always `offset`
/// seconds ahead of UTC.  Returns nullopt if there is none within `longest` days.
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

/// Returns whether a month has a day accepted by `isDay`.
inline bool hasDay(int year, int month, const std::function<bool(const SlowDate&)>& isDay) {
    const auto& dates = slowDates();
    for (auto i = static_cast<std::size_t>(year - 1970) * 365; dates[i].year <= year; ++i)
        if (dates[i].year == year && dates[i].month == month && isDay(dates[i]))
            return true;
    return false;
}

} // namespace Qel
