#include <algorithm>
#include <ctime>
#include <set>

#include <gtest/gtest.h>

#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthDuration.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "SlowCalendar.h"
#include "TriggerResult.h"

// In Ireland, standard time is that of the summer, and winter time is a daylight saving time of minus one hour:
// tm_isdst is 1 in winter.  A winter midnight in standard time is 23:00 of the previous day on the wall clock.

namespace Qel {

namespace {

constexpr long hour = 3600;

/// The rule as a POSIX TZ string, and from the time zone database.
class NegativeSummerTimeTest : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        const std::time_t winter = utc(2024, 1, 15, 12);
        std::tm january{};
        ASSERT_TRUE(localtime_r(&winter, &january));
        ASSERT_EQ(january.tm_gmtoff, 0);
        if (january.tm_isdst == 0)
            GTEST_SKIP() << "this time zone database defines winter time as standard time";
    }

    ScopedTimeZone zone{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Zones, NegativeSummerTimeTest, testing::Values("IST-1GMT0,M10.5.0,M3.5.0/1", "Europe/Dublin"),
                         [](const auto& zone) { return zone.index == 0 ? "Rule" : "Database"; });

TEST_P(NegativeSummerTimeTest, FindsLastDayOfEachMonth) {
    constexpr int lengths[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 0; month < 12; ++month) {
        int last = 0;
        ASSERT_EQ(QelSchedulerMonthDuration::getLastDayOfMonth(month, 124, last), 0);
        EXPECT_EQ(last, lengths[month]) << month;
        bool isLast = false;
        ASSERT_EQ(QelSchedulerMonthDuration::isLastDayOfMonth(month, 124, lengths[month], isLast), 0);
        EXPECT_TRUE(isLast) << month;
    }
}

TEST_P(NegativeSummerTimeTest, FindsFirstWeekDayOfEachMonth) {
    for (const SlowDate& date : slowDates()) {
        if (date.year < 2024 || date.year > 2026 || date.day > 7)
            continue;
        int day = 0;
        ASSERT_EQ(QelSchedulerMonthDuration::getNWeekDayOfMonth(date.month - 1, date.year - 1900, date.weekDay, 1, day),
                  0);
        EXPECT_EQ(day, date.day) << date.year << '-' << date.month;
    }
}

TEST_P(NegativeSummerTimeTest, MonthEndsAtMidnightInStandardTime) {
    const QelSchedulerMonthDuration january(local(2024, 1, 1, 3), 31);
    ASSERT_TRUE(january.isValid());
    EXPECT_EQ(january.begin, local(2024, 1, 31, 3));
    EXPECT_EQ(january.end, utc(2024, 1, 31, 23));
    EXPECT_EQ(QelSchedulerMonthDuration(local(2024, 7, 1, 3), 31).end, local(2024, 8, 1));
}

/// Expected run at an hour of the day: in standard time, or on the wall clock if standard time would still be in the
/// previous month on the first of the month.
long expectedRun(const SlowDate& date, int hourOfDay) {
    const bool isWinter = date.month <= 3 || date.month >= 11;
    const long midnight = date.number * testDay;
    return midnight + hourOfDay * hour - (isWinter && hourOfDay == 0 ? 0 : hour);
}

/// A date in the middle of a month, away from daylight saving changes.
const SlowDate& secondMonday(int year, int month) {
    return *std::find_if(slowDates().begin(), slowDates().end(), [&](const SlowDate& date) {
        return date.year == year && date.month == month && date.weekDay == 1 && date.day > 7;
    });
}

/// Triggers that run on the second Monday of each month of 2024, selected by day or by week number.
QelSchedulerMonthlyTrigger byDay(const SlowDate& monday, const std::set<int>& months, long start) {
    QelSchedulerMonthlyTrigger trigger(start, qelNoTime);
    trigger.days = {monday.day};
    trigger.months = months;
    return trigger;
}
QelSchedulerMonthlyDayOfWeekTrigger byWeekDay(const std::set<int>& months, long start) {
    QelSchedulerMonthlyDayOfWeekTrigger trigger(start, qelNoTime);
    trigger.weekDays = {1};
    trigger.weekNumbers = {2};
    trigger.months = months;
    return trigger;
}

TEST_P(NegativeSummerTimeTest, MonthlyTriggersRunInMonthOfStart) {
    for (int month = 1; month <= 12; ++month)
        for (const int hourOfDay : {0, 1, 12, 23}) {
            const SlowDate& monday = secondMonday(2024, month);
            const long start = local(2024, month, 1, hourOfDay);
            const TriggerResult expected = runAt(expectedRun(monday, hourOfDay));
            EXPECT_EQ(nextRun(byDay(monday, {month}, start), start), expected) << month << ' ' << hourOfDay;
            EXPECT_EQ(nextRun(byWeekDay({month}, start), start), expected) << month << ' ' << hourOfDay;
        }
}

TEST_P(NegativeSummerTimeTest, MonthlyTriggersRunInLaterMonth) {
    for (int month = 1; month <= 12; ++month)
        for (const int hourOfDay : {0, 1, 12, 23}) {
            const int startMonth = month == 1 ? 12 : month - 1;
            const long start = local(month == 1 ? 2023 : 2024, startMonth, 20, hourOfDay);
            const SlowDate& monday = secondMonday(2024, month);
            const TriggerResult expected = runAt(expectedRun(monday, hourOfDay));
            EXPECT_EQ(nextRun(byDay(monday, {month}, start), start), expected) << month << ' ' << hourOfDay;
            EXPECT_EQ(nextRun(byWeekDay({month}, start), start), expected) << month << ' ' << hourOfDay;
        }
}

TEST_P(NegativeSummerTimeTest, RunsOnLastDayOfEachMonth) {
    for (int month = 1; month <= 12; ++month) {
        QelSchedulerMonthlyTrigger trigger(local(2024, month, 1, 12), qelNoTime);
        trigger.days = {QelSchedulerMonthDuration::lastDay};
        trigger.months = {month};
        const TriggerResult answer = nextRun(trigger, trigger.start);
        EXPECT_EQ(answer.result, 0);
        EXPECT_EQ(answer.next, utc(2024, month + 1, 0, 11)) << month;
    }
}

} // namespace

} // namespace Qel
