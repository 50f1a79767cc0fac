#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"

#include <limits>

#include <gtest/gtest.h>

#include "TimeZones.h"
#include "TriggerResult.h"

namespace Qel {

namespace {

const std::set<int> allMonths{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
constexpr int lastDay = 32;

QelSchedulerMonthlyTrigger monthly(const std::set<int>& days, const std::set<int>& months, long start,
                                   long end = qelNoTime) {
    QelSchedulerMonthlyTrigger trigger(start, end);
    trigger.days = days;
    trigger.months = months;
    return trigger;
}

class QelSchedulerMonthlyTriggerTest : public ZoneTest {
protected:
    /// A time in standard time, as used by the trigger.
    static long at(int year, int month, int day, int hour = 0) { return standard(GetParam(), year, month, day, hour); }
    /// A start at that time of day on the wall clock.
    static long start(int year, int month, int day, int hour = 0) { return local(year, month, day, hour); }
};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerMonthlyTriggerTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(QelSchedulerMonthlyTriggerTest, RunsOnItsDaysAtTimeOfStart) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5, 20}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(nextRun(trigger, start(2024, 1, 1, 3)), runAt(at(2024, 1, 5, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 1, 5, 3) - 1), runAt(at(2024, 1, 5, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 1, 5, 3)), runAt(at(2024, 1, 20, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 1, 20, 3)), runAt(at(2024, 2, 5, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, FindsLastDayOfFebruary) {
    EXPECT_EQ(nextRun(monthly({lastDay}, {2}, start(2024, 2, 3, 4)), start(2024, 2, 3, 4)), runAt(at(2024, 2, 29, 4)));
    EXPECT_EQ(nextRun(monthly({lastDay}, {2}, start(2023, 2, 3, 4)), start(2023, 2, 3, 4)), runAt(at(2023, 2, 28, 4)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, ReturnsPastTimeMonthsAfterStart) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(nextRun(trigger, start(2024, 6, 1)), runAt(at(2024, 2, 6, 3))) << "the end of the run in February";
    EXPECT_EQ(nextRun(monthly({lastDay}, allMonths, start(2024, 1, 1, 3)), start(2024, 6, 1)), runAt(at(2024, 3, 1)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, ReturnsEndOfDayAfterLastConsideredRun) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(nextRun(trigger, at(2024, 2, 5, 3)), runAt(at(2024, 2, 6, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 2, 6, 3)), runAt(at(2024, 2, 6, 3))) << "not later than the given time";
}

TEST_P(QelSchedulerMonthlyTriggerTest, LaterYearConsidersMonthAfterStart) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(nextRun(trigger, start(2026, 1, 10)), runAt(at(2026, 2, 5, 3)));
    EXPECT_EQ(nextRun(trigger, start(2026, 1, 2)), runAt(at(2026, 2, 5, 3))) << "January is searched for in 2024";
    EXPECT_EQ(nextRun(trigger, start(2026, 3, 1)), runAt(at(2026, 2, 6, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, RejectsStartOn29FebruaryInCommonYear) {
    EXPECT_EQ(nextRun(monthly({5}, allMonths, start(2024, 2, 29)), start(2025, 1, 1)), failure);
    EXPECT_EQ(nextRun(monthly({28}, {2}, start(2024, 2, 29)), start(2025, 1, 1)), failure);
}

TEST_P(QelSchedulerMonthlyTriggerTest, RejectsFebruaryStartOfCommonYearInLeapYear) {
    EXPECT_EQ(nextRun(monthly({5}, {2}, start(2023, 2, 10)), start(2024, 1, 1)), failure)
        << "the 29th is searched for in 2023";
}

TEST_P(QelSchedulerMonthlyTriggerTest, FebruaryStartOfLeapYearUsesLengthOfCommonYear) {
    // The 28th is not the last day in 2024, so its day ends on the 29th at noon.  28 days and another noon before that
    // is 2 February at midnight.
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, {2}, start(2024, 2, 10, 12));
    EXPECT_EQ(nextRun(trigger, start(2025, 1, 1)), runAt(at(2026, 2, 5, 12)));
    EXPECT_EQ(nextRun(monthly({1}, {2}, start(2024, 2, 10, 12)), start(2025, 1, 1)), failure);
}

TEST_P(QelSchedulerMonthlyTriggerTest, RunsInOnlyMonthAYearLater) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, {3}, start(2024, 3, 1, 3));
    EXPECT_EQ(nextRun(trigger, start(2024, 3, 1, 3)), runAt(at(2024, 3, 5, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 3, 5, 3)), runAt(at(2025, 3, 5, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, SkipsMonthsNotInSet) {
    EXPECT_EQ(nextRun(monthly({5}, {2, 12}, start(2024, 3, 1, 3)), start(2024, 3, 1, 3)), runAt(at(2024, 12, 5, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, RunInMonthOfStartMayPrecedeStartAndFollowEnd) {
    EXPECT_EQ(nextRun(monthly({5}, {1}, start(2024, 1, 20, 3)), start(2024, 1, 2)), runAt(at(2024, 1, 5, 3)));
    EXPECT_EQ(nextRun(monthly({25}, {1}, start(2024, 1, 20, 3), start(2024, 1, 22)), start(2024, 1, 21)),
              runAt(at(2024, 1, 25, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, RunInLaterMonthMustNotFollowEnd) {
    const long run = at(2024, 2, 5, 3);
    EXPECT_EQ(nextRun(monthly({5}, allMonths, start(2024, 1, 20, 3), run), start(2024, 1, 21)), runAt(run));
    EXPECT_EQ(nextRun(monthly({5}, allMonths, start(2024, 1, 20, 3), run - 1), start(2024, 1, 21)), noMoreRuns);
}

TEST_P(QelSchedulerMonthlyTriggerTest, HasNoRunsAfterEndEvenWithInvalidDays) {
    const long end = start(2024, 2, 1);
    EXPECT_EQ(nextRun(monthly({}, {}, start(2024, 1, 1), end), end + 1), noMoreRuns);
    EXPECT_EQ(nextRun(monthly({}, {1}, start(2024, 1, 1), end), end), failure);
}

TEST_P(QelSchedulerMonthlyTriggerTest, RejectsEmptySetsAndNegativeTimes) {
    const long first = start(2024, 1, 1);
    EXPECT_EQ(nextRun(monthly({}, {1}, first), first), failure);
    EXPECT_EQ(nextRun(monthly({1}, {}, first), first), failure);
    EXPECT_EQ(nextRun(monthly({1}, {1}, first), -1), failure);
    EXPECT_EQ(nextRun(monthly({1}, {13}, first), first), failure) << "no valid month";
}

TEST_P(QelSchedulerMonthlyTriggerTest, RejectsMonthWithoutDays) {
    EXPECT_EQ(nextRun(monthly({31}, allMonths, start(2024, 4, 1)), start(2024, 4, 1)), failure);
    EXPECT_EQ(nextRun(monthly({30}, allMonths, start(2024, 1, 31)), start(2024, 1, 31)), failure) << "February";
}

TEST_P(QelSchedulerMonthlyTriggerTest, LastDayByNumberAndSentinelRunsInNextMonthToo) {
    const QelSchedulerMonthlyTrigger trigger = monthly({30, lastDay}, {4}, start(2024, 4, 1, 2));
    EXPECT_EQ(nextRun(trigger, at(2024, 4, 30, 2)), runAt(at(2024, 5, 2, 2)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, RejectsDatesOutOfRange) {
    constexpr long last = std::numeric_limits<long>::max();
    if (sizeof(long) == 4) {
        EXPECT_EQ(nextRun(monthly({5}, allMonths, start(2038, 1, 1)), start(2038, 1, 1)), runAt(at(2038, 1, 5)));
        EXPECT_EQ(nextRun(monthly({25}, allMonths, start(2038, 1, 1)), start(2038, 1, 1)), noMoreRuns);
        EXPECT_EQ(nextRun(monthly({5}, allMonths, start(2038, 1, 1)), last), noMoreRuns);
    } else {
        EXPECT_EQ(nextRun(monthly({5}, allMonths, last), 0), failure);
        EXPECT_EQ(nextRun(monthly({5}, allMonths, 0), last), failure);
    }
}

TEST(QelSchedulerMonthlyTriggerClockTest, SummerRunsAreOneHourLateOnWallClock) {
    const ScopedTimeZone zone("Europe/Berlin");
    const QelSchedulerMonthlyTrigger july = monthly({5}, allMonths, local(2024, 7, 1, 3));
    EXPECT_EQ(nextRun(july, local(2024, 7, 1, 3)), runAt(local(2024, 7, 5, 4)));
    const QelSchedulerMonthlyTrigger march = monthly({5, 31}, {3, 4}, local(2024, 3, 1, 3));
    EXPECT_EQ(nextRun(march, local(2024, 3, 1, 3)), runAt(local(2024, 3, 5, 3)));
    EXPECT_EQ(nextRun(march, local(2024, 3, 5, 3)), runAt(local(2024, 3, 31, 4))) << "the day of the change";
    EXPECT_EQ(nextRun(march, local(2024, 3, 31, 4)), runAt(local(2024, 4, 5, 4)));
    const QelSchedulerMonthlyTrigger october = monthly({26, 28}, {10}, local(2024, 10, 1, 3));
    EXPECT_EQ(nextRun(october, local(2024, 10, 1, 3)), runAt(local(2024, 10, 26, 4)));
    EXPECT_EQ(nextRun(october, local(2024, 10, 26, 4)), runAt(local(2024, 10, 28, 3)));
}

TEST(QelSchedulerMonthlyTriggerClockTest, StartInLastHourOfSummerDayBeginsMonthOnSecondDay) {
    const ScopedTimeZone zone("Europe/Berlin");
    const long start = local(2024, 7, 1, 23, 30);
    EXPECT_EQ(nextRun(monthly({1}, {7}, start), start), failure);
    EXPECT_EQ(nextRun(monthly({5}, {7}, start), start), runAt(local(2024, 7, 5, 0, 30)));
}

} // namespace

} // namespace Qel
