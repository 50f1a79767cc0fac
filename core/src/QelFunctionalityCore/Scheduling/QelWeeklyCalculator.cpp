#include "QelFunctionalityCore/Scheduling/QelWeeklyCalculator.h"

#include <cmath>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"

namespace Qel::Weekly {

namespace {

using boost::gregorian::date;
using boost::gregorian::date_duration;

constexpr int daysPerWeek = 7;

// Range of boost::gregorian::date, minus a margin for a run in the following year.
constexpr std::int64_t earliest = -17'987'443'200; // 1400-01-01
constexpr std::int64_t latest = 253'086'768'000;   // 9990-01-01

bool isInRange(std::int64_t time) {
    return earliest <= time && time < latest;
}

const date epoch(1970, 1, 1);

// Seconds since midnight, also for times before the epoch.
std::int64_t timeOfDay(std::int64_t time) {
    const std::int64_t remainder = time % secondsPerDay;
    return remainder < 0 ? remainder + secondsPerDay : remainder;
}

date dateOf(std::int64_t time) {
    return epoch + date_duration(static_cast<long>((time - timeOfDay(time)) / secondsPerDay));
}

} // namespace

Calculator::Calculator(int periodInWeeks, const std::set<int>& weekDays) : weeks(periodInWeeks) {
    for (const int day : weekDays)
        days.insert(weekDay(day));
}

int Calculator::weekDay(int w) {
    // 64 bits: week days come from messages and may be any int.
    return static_cast<int>(daysPerWeek - (std::int64_t{daysPerWeek} - w) % daysPerWeek);
}

std::int64_t Calculator::next(std::int64_t now, std::int64_t start) const {
    if (!isInRange(now) || !isInRange(start))
        return -1;
    date from = dateOf(start);
    if (now >= start)
        from = dateOf(now) + date_duration(timeOfDay(now) < timeOfDay(start) ? 0 : 1);
    return (next(from) - epoch).days() * secondsPerDay + timeOfDay(start);
}

date Calculator::next(date d) const {
    const date thisYear(d.year(), 1, 1);
    const date nextYear(static_cast<unsigned short>(d.year() + 1), 1, 1);
    const date candidate = thisYear + date_duration(doNext(d));
    return candidate < nextYear ? candidate : nextYear + date_duration(doNext(nextYear));
}

int Calculator::doNext(date d) const {
    return doNext(d.day_of_year() - 1, weekDay(d.day_of_week().as_number()));
}

int Calculator::doNext(int i, int w) const {
    const int firstWeekDay = (w - i % daysPerWeek + daysPerWeek) % daysPerWeek; // of 1 January, 0 for Sunday
    const double week = std::ceil((firstWeekDay + i) / 7.0) - 1.0;
    double activeWeek = std::ceil(week / weeks) * weeks;
    int day = *days.begin();
    if (week == activeWeek) {
        if (const auto later = days.lower_bound(w); later != days.end())
            day = *later;
        else
            activeWeek += weeks;
    }
    return static_cast<int>(activeWeek) * daysPerWeek + day - firstWeekDay;
}

} // namespace Qel::Weekly
