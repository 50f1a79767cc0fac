#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"

#include <limits>

#include <gtest/gtest.h>

#include "TimeZones.h"
#include "TriggerResult.h"

namespace Qel {

namespace {

constexpr long noon = testDay / 2;

QelSchedulerDailyTrigger everyDays(int days, long start, long end = qelNoTime) {
    QelSchedulerDailyTrigger trigger(start, end);
    trigger.interval = days;
    return trigger;
}

QelSchedulerDailyTrigger onWeekdays(long start, long end = qelNoTime) {
    QelSchedulerDailyTrigger trigger(start, end);
    trigger.weekdaysOnly = true;
    return trigger;
}

class QelSchedulerDailyTriggerTest : public ZoneTest {};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerDailyTriggerTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(QelSchedulerDailyTriggerTest, RunsEveryNthDay) {
    const QelSchedulerDailyTrigger trigger = everyDays(2, noon);
    EXPECT_EQ(nextRun(trigger, 2 * testDay + noon), runAt(4 * testDay + noon));
    EXPECT_EQ(nextRun(trigger, 2 * testDay + noon - 1), runAt(2 * testDay + noon));
    EXPECT_EQ(nextRun(trigger, noon), runAt(2 * testDay + noon));
}

TEST_P(QelSchedulerDailyTriggerTest, IntervalTakesPrecedenceOverFlags) {
    QelSchedulerDailyTrigger trigger = everyDays(1, local(2024, 1, 5, 10)); // a Friday
    trigger.weekdaysOnly = true;
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 5, 10)), runAt(local(2024, 1, 6, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, IntervalOfZeroMeansUnset) {
    QelSchedulerDailyTrigger trigger = everyDays(0, local(2024, 1, 1, 10));
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 2, 11)), runAt(local(2024, 1, 6, 10))) << "weekends only";
    trigger.weekdaysOnly = true;
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 2, 11)), runAt(local(2024, 1, 3, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, IgnoresValueOfUnspecifiedInterval) {
    QelSchedulerDailyTrigger trigger = everyDays(3, local(2024, 1, 1, 10));
    trigger.interval.specify(false);
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 2, 11)), runAt(local(2024, 1, 6, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, NegativeIntervalReturnsEarlierTime) {
    EXPECT_EQ(nextRun(everyDays(-1, noon), 5 * testDay), runAt(3 * testDay + noon));
}

TEST_P(QelSchedulerDailyTriggerTest, WeekdaysOnlyMovesWeekendToMonday) {
    const QelSchedulerDailyTrigger trigger = onWeekdays(local(2024, 1, 1, 10));
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 4, 10)), runAt(local(2024, 1, 5, 10)));
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 5, 10)), runAt(local(2024, 1, 8, 10)));
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 6, 10)), runAt(local(2024, 1, 8, 10)));
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 7, 9)), runAt(local(2024, 1, 8, 10)));
    EXPECT_EQ(nextRun(trigger, local(2024, 1, 7, 10)), runAt(local(2024, 1, 8, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, MoveToMondayMayPassEnd) {
    const long friday = local(2024, 1, 5, 10);
    EXPECT_EQ(nextRun(onWeekdays(local(2024, 1, 1, 10), friday + 3 * testDay), friday), runAt(friday + 3 * testDay));
    EXPECT_EQ(nextRun(onWeekdays(local(2024, 1, 1, 10), friday + 3 * testDay - 1), friday), noMoreRuns)
        << "the Saturday would have been before the end";
}

TEST_P(QelSchedulerDailyTriggerTest, RunsOnWeekendsWithoutFlagAndInterval) {
    QelSchedulerDailyTrigger trigger(local(2024, 1, 1, 10), qelNoTime);
    for (const bool flag : {false, true}) {
        trigger.weekendsOnly = flag; // not evaluated
        EXPECT_EQ(nextRun(trigger, local(2024, 1, 3, 10)), runAt(local(2024, 1, 6, 10))) << "a Thursday";
        EXPECT_EQ(nextRun(trigger, local(2024, 1, 6, 9)), runAt(local(2024, 1, 6, 10)));
        EXPECT_EQ(nextRun(trigger, local(2024, 1, 6, 10)), runAt(local(2024, 1, 7, 10)));
        EXPECT_EQ(nextRun(trigger, local(2024, 1, 7, 10)), runAt(local(2024, 1, 13, 10)));
    }
}

TEST_P(QelSchedulerDailyTriggerTest, FutureStartIsFirstRunOnAnyDay) {
    const long saturday = local(2024, 1, 6, 10);
    EXPECT_EQ(nextRun(onWeekdays(saturday), saturday - 1), runAt(saturday));
    EXPECT_EQ(nextRun(onWeekdays(saturday), saturday), runAt(saturday + 2 * testDay));
    EXPECT_EQ(nextRun(QelSchedulerDailyTrigger(local(2024, 1, 3, 10), qelNoTime), 0), runAt(local(2024, 1, 3, 10)));
    EXPECT_EQ(nextRun(onWeekdays(saturday, saturday - 100), saturday - 200), runAt(saturday)) << "even after the end";
}

TEST_P(QelSchedulerDailyTriggerTest, HasNoRunsAfterEnd) {
    const QelSchedulerDailyTrigger trigger = everyDays(1, noon, 3 * testDay + noon);
    EXPECT_EQ(nextRun(trigger, 2 * testDay + noon), runAt(3 * testDay + noon)) << "the end is inclusive";
    EXPECT_EQ(nextRun(trigger, 3 * testDay + noon), noMoreRuns);
    EXPECT_EQ(nextRun(trigger, 3 * testDay + noon + 1), noMoreRuns);
    EXPECT_EQ(nextRun(everyDays(1, 9 * testDay, 3 * testDay), 4 * testDay), noMoreRuns)
        << "although the start is in the future";
}

TEST_P(QelSchedulerDailyTriggerTest, RejectsNegativeTime) {
    EXPECT_EQ(nextRun(everyDays(1, noon), -1), failure);
    EXPECT_EQ(nextRun(everyDays(1, noon, 5), -1), failure);
}

TEST_P(QelSchedulerDailyTriggerTest, RunsAre86400SecondsApartAcrossDaylightSavingChanges) {
    for (const int month : {3, 4, 9, 10, 11}) {
        const long start = local(2024, month, 1, 12);
        const QelSchedulerDailyTrigger trigger = everyDays(1, start);
        for (long run = start; run < start + 31 * testDay; run += testDay)
            ASSERT_EQ(nextRun(trigger, run), runAt(run + testDay));
    }
}

TEST_P(QelSchedulerDailyTriggerTest, RunsBeyondRangeOfLongAreNoRuns) {
    constexpr long last = std::numeric_limits<long>::max();
    EXPECT_EQ(nextRun(everyDays(1, 0), last), noMoreRuns);
    EXPECT_EQ(nextRun(everyDays(std::numeric_limits<int>::max(), 0, last - 1), last - 1), noMoreRuns);
    EXPECT_EQ(nextRun(everyDays(1, last), 0), runAt(last));
}

TEST_P(QelSchedulerDailyTriggerTest, AcceptsStartBeforeEpoch) {
    EXPECT_EQ(nextRun(everyDays(1, -10 * testDay + 5), 4), runAt(5));
    constexpr long first = std::numeric_limits<long>::min();
    const TriggerResult answer = nextRun(everyDays(1, first), 0);
    EXPECT_EQ(answer.result, 0);
    EXPECT_GT(answer.next, 0);
    EXPECT_LE(answer.next, testDay);
    EXPECT_EQ((static_cast<unsigned long>(answer.next) - static_cast<unsigned long>(first)) % testDay, 0U);
}

TEST(QelSchedulerDailyTriggerDateTest, RejectsDayOutOfRange) {
    if (sizeof(long) == 4)
        GTEST_SKIP() << "every long value is in range of the calendar";
    constexpr long far = std::numeric_limits<long>::max() - 2 * testDay;
    EXPECT_EQ(nextRun(onWeekdays(0), far), failure);
    EXPECT_EQ(nextRun(QelSchedulerDailyTrigger(0, qelNoTime), far), failure);
}

TEST(QelSchedulerDailyTriggerDateTest, WeekDayIsInLocalTime) {
    const long fridayNight = utc(2024, 1, 5, 23);
    {
        const ScopedTimeZone zone("UTC");
        EXPECT_EQ(nextRun(onWeekdays(fridayNight - testDay), fridayNight - 1), runAt(fridayNight));
    }
    const ScopedTimeZone zone("Europe/Berlin"); // Saturday in local time
    EXPECT_EQ(nextRun(onWeekdays(fridayNight - testDay), fridayNight - 1), runAt(fridayNight + 2 * testDay));
}

TEST(QelSchedulerDailyTriggerDateTest, SundayOf25HoursMovesToItsOwnEvening) {
    // The clocks go back on Sunday, 27 October 2024: 86400 seconds after its first half hour it is still Sunday.
    const ScopedTimeZone zone("Europe/Berlin");
    const long sunday = local(2024, 10, 27, 0, 30);
    EXPECT_EQ(nextRun(onWeekdays(sunday - 10 * testDay), sunday - 1), runAt(local(2024, 10, 27, 23, 30)));
}

} // namespace

} // namespace Qel
