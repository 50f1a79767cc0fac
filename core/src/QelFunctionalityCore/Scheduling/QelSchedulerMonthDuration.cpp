#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthDuration.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"

namespace Qel {

namespace {

constexpr int daysPerWeek = 7;
constexpr std::int64_t longestMonth = 31 * secondsPerDay;

} // namespace

/// The month that contains a start time.
struct QelSchedulerMonthDuration::Month {
    std::tm start;
    int last;         ///< number of the last day
    int firstWeekDay; ///< week day of the first day

    static int findFirstWeekDay(int month, int year, int& weekDay) {
        std::tm first{};
        if (makeDate(year, month, 1, first) != 0)
            return -1;
        weekDay = first.tm_wday;
        return 0;
    }

    /// See getNWeekDayOfMonth().
    [[nodiscard]] int findWeekDay(int weekDay, int n, int& day) const {
        if (n < 1 || n > lastWeek)
            return -1;
        int found = evaluateNWeekDayOfMonth(weekDay, firstWeekDay, n);
        // The sixth week day is past the end of the month: go back by weeks to the last one in the month.
        if (n == lastWeek && found > last)
            found -= (found - last + daysPerWeek - 1) / daysPerWeek * daysPerWeek;
        day = found > last ? -1 : found;
        return 0;
    }
};

QelSchedulerMonthDuration::QelSchedulerMonthDuration(std::int64_t start, const std::set<int>& monthDays)
    : QelSchedulerPeriodDuration(start, longestMonth) {
    addMonthDays(monthDays);
}

QelSchedulerMonthDuration::QelSchedulerMonthDuration(std::int64_t start, int monthDay)
    : QelSchedulerPeriodDuration(start, longestMonth) {
    addMonthDays(std::array{monthDay});
}

QelSchedulerMonthDuration::QelSchedulerMonthDuration(std::int64_t start, const std::set<int>& weekDays,
                                                     const std::set<int>& weekNumbers)
    : QelSchedulerPeriodDuration(start, longestMonth) {
    addWeekDays(weekDays, weekNumbers);
}

template <class Days> void QelSchedulerMonthDuration::addMonthDays(const Days& monthDays) {
    Month month{};
    if (beginMonth(month) != 0)
        return setInvalid();
    days.reserve(std::min<std::size_t>(monthDays.size(), lastDay));
    bool lastTaken = false;
    for (const int day : monthDays) {
        if (day < month.start.tm_mday || (day > month.last && day != lastDay))
            continue;
        if (day == month.last || (day == lastDay && !lastTaken)) {
            lastTaken = true;
            if (addLastDay(month) != 0)
                return setInvalid();
        } else {
            addDay(month, day);
        }
    }
    finish();
}

void QelSchedulerMonthDuration::addWeekDays(const std::set<int>& weekDays, const std::set<int>& weekNumbers) {
    Month month{};
    if (beginMonth(month) != 0 ||
        Month::findFirstWeekDay(month.start.tm_mon, month.start.tm_year, month.firstWeekDay) != 0)
        return setInvalid();
    days.reserve(std::min<std::size_t>(weekDays.size(), daysPerWeek) *
                 std::min<std::size_t>(weekNumbers.size(), lastWeek));
    for (const int number : weekNumbers)
        for (const int weekDay : weekDays) {
            int day = -1;
            if (month.findWeekDay(weekDay, number, day) != 0)
                return setInvalid();
            const auto isDay = [day](const QelSchedulerDayDuration& taken) { return taken.day == day; };
            if (day < month.start.tm_mday || std::any_of(days.begin(), days.end(), isDay))
                continue;
            if (day != month.last)
                addDay(month, day);
            else if (addLastDay(month) != 0)
                return setInvalid();
        }
    finish();
}

int QelSchedulerMonthDuration::beginMonth(Month& month) const {
    if (!isValid() || localTimeCopy(begin, month.start) != 0)
        return -1;
    return getLastDayOfMonth(month.start.tm_mon, month.start.tm_year, month.last);
}

// `begin` is the start time until finish() is called.
std::int64_t QelSchedulerMonthDuration::beginOf(const Month& month, int day) const {
    return begin + (day - month.start.tm_mday) * secondsPerDay;
}

void QelSchedulerMonthDuration::addDay(const Month& month, int day) {
    days.emplace_back(beginOf(month, day), day, secondsPerDay);
}

int QelSchedulerMonthDuration::addLastDay(const Month& month) {
    if (makeLocalMidnight(month.start.tm_year, month.start.tm_mon + 1, 1, standardTime, end) != 0)
        return -1;
    const std::int64_t dayBegin = beginOf(month, month.last);
    days.emplace_back(dayBegin, month.last, end - dayBegin);
    return 0;
}

int QelSchedulerMonthDuration::getLastDayOfMonth(int month, int year, int& last) {
    // The 32nd day of a month rolls over into the next month by 32 minus the length of the month.
    constexpr int pastAnyMonth = 32;
    std::tm rolled{};
    if (makeDate(year, month, pastAnyMonth, rolled) != 0)
        return -1;
    last = pastAnyMonth - rolled.tm_mday;
    return 0;
}

int QelSchedulerMonthDuration::isLastDayOfMonth(int month, int year, int day, bool& isLast) {
    int last = 0;
    if (getLastDayOfMonth(month, year, last) != 0)
        return -1;
    isLast = day == last;
    return 0;
}

int QelSchedulerMonthDuration::evaluateNWeekDayOfMonth(int weekDay, int firstWeekDay, int n) {
    // 64 bits: week days come from messages and may be any int.
    const std::int64_t sinceFirst = std::int64_t{weekDay} - firstWeekDay;
    const std::int64_t weeks = std::int64_t{n} * daysPerWeek;
    const std::int64_t day = sinceFirst + weeks + (sinceFirst < 0 ? 1 : 1 - daysPerWeek);
    return static_cast<int>(
        std::clamp<std::int64_t>(day, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

int QelSchedulerMonthDuration::getNWeekDayOfMonth(int month, int year, int weekDay, int n, int& day) {
    Month found{};
    if (n < 1 || n > lastWeek || Month::findFirstWeekDay(month, year, found.firstWeekDay) != 0 ||
        getLastDayOfMonth(month, year, found.last) != 0)
        return -1;
    return found.findWeekDay(weekDay, n, day);
}

} // namespace Qel
