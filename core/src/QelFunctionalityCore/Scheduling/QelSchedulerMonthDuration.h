#pragma once

#include <ctime>
#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDuration.h"

namespace Qel {

/// The run days of one month, starting with the day of a start time, each at the start's time of day.
///
/// The run on the last day of the month extends to the midnight at the end of the month.  That midnight is computed in
/// standard time, so in summer it is 01:00 on the wall clock.
///
/// Months are 0 to 11, years count from 1900, week days are 0 for Sunday to 6 for Saturday.
class QEL_EXPORT QelSchedulerMonthDuration : public QelSchedulerPeriodDuration {
public:
    /// Sentinel for the last day of the month.
    static constexpr int lastDay = 32;
    /// Sentinel for the last occurrence of the week day in the month.
    static constexpr int lastWeek = 6;

    /// Runs on days of the month: 1 to 31, and `lastDay`.  Days that the month does not have are ignored.
    ///
    /// If `monthDays` contains both the number of the last day and `lastDay`, there is one more run: the sentinel is
    /// then used as a 32nd day, which is in the next month.
    QelSchedulerMonthDuration(std::int64_t start, const std::set<int>& monthDays);
    /// Runs on a single day of the month.
    QelSchedulerMonthDuration(std::int64_t start, int monthDay);
    /// Runs on the n-th week days of the month: the first to the fifth, and `lastWeek`.  A fifth one that the month
    /// does not have is ignored; any other number makes the whole span invalid.
    QelSchedulerMonthDuration(std::int64_t start, const std::set<int>& weekDays, const std::set<int>& weekNumbers);

    /// Computes the number of the month's last day.  Returns -1 and leaves `last` unchanged if the year is out of
    /// range.
    [[nodiscard]] static int getLastDayOfMonth(int month, int year, int& last);
    /// Sets `isLast` to whether `day` is the last day of the month.  Returns -1 and leaves it unchanged if the year is
    /// out of range.
    [[nodiscard]] static int isLastDayOfMonth(int month, int year, int day, bool& isLast);
    /// Returns the day of the n-th `weekDay` of a month whose first day is a `firstWeekDay`.  The result may be past
    /// the end of the month.
    [[nodiscard]] static int evaluateNWeekDayOfMonth(int weekDay, int firstWeekDay, int n);
    /// Finds the n-th `weekDay` of a month; `n` may also be `lastWeek`.  Sets `day` to -1 and returns 0 if the month
    /// has no such day.  Returns -1 and leaves `day` unchanged if `n` is not 1 to 6 or the year is out of range.
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
