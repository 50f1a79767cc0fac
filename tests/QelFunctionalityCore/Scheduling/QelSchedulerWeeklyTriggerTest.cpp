#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"

#include <limits>

#include <gtest/gtest.h>

#include "TimeZones.h"
#include "TriggerResult.h"

namespace Qel {

namespace {

QelSchedulerWeeklyTrigger weekly(int weeks, const std::set<int>& days, long start, long end = qelNoTime) {
    QelSchedulerWeeklyTrigger trigger(start, end);
    trigger.weeks = weeks;
    trigger.days = days;
    return trigger;
}

/// Runs in every zone; the results do not depend on it, since all times are in UTC.
class QelSchedulerWeeklyTriggerTest : public ZoneTest {
protected:
    const long start = utc(2024, 1, 1, 10); // a Monday
};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerWeeklyTriggerTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(QelSchedulerWeeklyTriggerTest, RunsEveryNthWeekAtTimeOfStart) {
    const QelSchedulerWeeklyTrigger trigger = weekly(2, {1}, start);
    EXPECT_EQ(nextRun(trigger, utc(2024, 1, 1, 9)), runAt(utc(2024, 1, 1, 10))) << "on the start itself";
    EXPECT_EQ(nextRun(trigger, utc(2024, 1, 1, 10)), runAt(utc(2024, 1, 15, 10)));
    EXPECT_EQ(nextRun(trigger, utc(2024, 12, 30, 11)), runAt(utc(2025, 1, 13, 10)));
    EXPECT_EQ(nextRun(trigger, utc(2024, 12, 30, 9)), runAt(utc(2024, 12, 30, 10)));
}

TEST_P(QelSchedulerWeeklyTriggerTest, CountsWeeksFromFirstOfJanuary) {
    const QelSchedulerWeeklyTrigger trigger = weekly(3, {1}, utc(2024, 1, 8, 10));
    EXPECT_EQ(nextRun(trigger, 0), runAt(utc(2024, 1, 22, 10)));
    EXPECT_EQ(nextRun(trigger, utc(2024, 12, 20)), runAt(utc(2024, 12, 23, 10)));
    EXPECT_EQ(nextRun(trigger, utc(2024, 12, 23, 10)), runAt(utc(2025, 1, 20, 10)));
}

TEST_P(QelSchedulerWeeklyTriggerTest, SundayIsZeroOrSeven) {
    for (const int sunday : {0, 7})
        EXPECT_EQ(nextRun(weekly(1, {sunday}, start), start), runAt(utc(2024, 1, 7, 10)));
}

TEST_P(QelSchedulerWeeklyTriggerTest, IgnoresDaylightSavingChange) {
    for (long day = utc(2024, 1, 1, 10); day < utc(2025, 1, 1); day += testDay)
        ASSERT_EQ(nextRun(weekly(1, {1, 2, 3, 4, 5, 6, 7}, start), day), runAt(day + testDay));
}

TEST_P(QelSchedulerWeeklyTriggerTest, RejectsPeriodsOutside1To52) {
    for (const int weeks : {-1, 0, 53, std::numeric_limits<int>::max()})
        EXPECT_EQ(nextRun(weekly(weeks, {1}, start), start), failure) << weeks;
    EXPECT_EQ(nextRun(weekly(52, {1}, start), start), runAt(utc(2024, 12, 30, 10)));
    EXPECT_EQ(nextRun(weekly(0, {1}, start, start), start + 1), failure) << "checked before the end";
}

TEST_P(QelSchedulerWeeklyTriggerTest, HasNoRunsAfterEndEvenWithoutDays) {
    EXPECT_EQ(nextRun(weekly(1, {}, start, start), start + 1), noMoreRuns);
    EXPECT_EQ(nextRun(weekly(1, {1}, start, start + 7 * testDay), start), runAt(start + 7 * testDay));
    EXPECT_EQ(nextRun(weekly(1, {1}, start, start + 7 * testDay - 1), start), noMoreRuns);
}

TEST_P(QelSchedulerWeeklyTriggerTest, RejectsEmptyDays) {
    EXPECT_EQ(nextRun(weekly(1, {}, start), start), failure);
    EXPECT_EQ(nextRun(weekly(1, {}, start, start), start), failure);
}

TEST_P(QelSchedulerWeeklyTriggerTest, AcceptsNegativeTime) {
    EXPECT_EQ(nextRun(weekly(1, {1}, start), -1), runAt(start));
    EXPECT_EQ(nextRun(weekly(1, {3}, -100 * testDay), -7 * testDay), runAt(-testDay)) << "a Wednesday";
}

TEST_P(QelSchedulerWeeklyTriggerTest, RunsOutOfRangeAreNoRuns) {
    constexpr long last = std::numeric_limits<long>::max();
    EXPECT_EQ(nextRun(weekly(1, {1}, start), last), noMoreRuns);
    EXPECT_EQ(nextRun(weekly(1, {1}, last), last - 1), noMoreRuns);
}

TEST_P(QelSchedulerWeeklyTriggerTest, InvalidDayRunsInNextWeek) {
    EXPECT_EQ(nextRun(weekly(2, {8}, start), start), runAt(utc(2024, 1, 8, 10)));
}

} // namespace

} // namespace Qel
