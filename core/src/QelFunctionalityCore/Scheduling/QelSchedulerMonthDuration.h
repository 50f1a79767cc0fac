#pragma once

#include <ctime>
#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerDuration.h"

namespace Qel {

/// The run days of one month, from the day of a start time on, each at the start's time of day.
///
/// The run on the last day of the month reaches to the midnight that ends the month.  That midnight is taken in
/// standard time, so in summer it is an hour late on the clocks.
///
/// Months count from 0 to 11 and years from 1900, week days from 0 for Sunday to 6 for Saturday.
class QelSchedulerMonthDuration : public QelSchedulerPeriodDuration {
public:
    /// Day of the month that stands for its last one.
    static constexpr int lastDay = 32;
    /// Week number that stands for the last such week day of the month.
    static constexpr int lastWeek = 6;

    /// Runs on days of the month: 1 to 31, and `lastDay`.  A day that the month doesn't have is no run day.
    ///
    /// A set that holds both the number of the last day and `lastDay` has a further run on purpose: the latter is taken
    /// for a 32nd day, which lies in the next month.
    QelSchedulerMonthDuration(std::int64_t start, const std::set<int>& monthDays);
    /// The same with a single day.
    QelSchedulerMonthDuration(std::int64_t start, int monthDay);
    /// Runs on the n-th week days of the month: the first to the fifth, and `lastWeek`.  A fifth one that the month
    /// doesn't have is no run day; any other number makes the whole span invalid.
    QelSchedulerMonthDuration(std::int64_t start, const std::set<int>& weekDays, const std::set<int>& weekNumbers);

    /// The number of the month's last day.  -1, and `last` unchanged, where the calendar doesn't reach.
    [[nodiscard]] static int getLastDayOfMonth(int month, int year, int& last);
    /// The same question about one day.
    [[nodiscard]] static int isLastDayOfMonth(int month, int year, int day, bool& isLast);
    /// The day of the n-th `weekDay` of a month whose first day is a `firstWeekDay`.  It may lie beyond the month's
    /// end.
    [[nodiscard]] static int evaluateNWeekDayOfMonth(int weekDay, int firstWeekDay, int n);
    /// The same for a certain month, with `lastWeek` among the values of `n`.  `day` is -1 if the month has no such
    /// day, which is no failure.  -1, and `day` unchanged, if `n` isn't 1 to 6 or the calendar doesn't reach.
    [[nodiscard]] static int getNWeekDayOfMonth(int month, int year, int weekDay, int n, int& day);

private:
    struct Month;

    template <class Days> void addMonthDays(const Days& monthDays);
    void addWeekDays(const std::set<int>& weekDays, const std::set<int>& weekNumbers);
    void addDay(const Month& month, int day);
    int addLastDay(const Month& month);
    [[nodiscard]] int beginMonth(Month& month) const;
    [[nodiscard]] std::int64_t beginOf(const Month& month, int day) const;
};

} // namespace Qel
