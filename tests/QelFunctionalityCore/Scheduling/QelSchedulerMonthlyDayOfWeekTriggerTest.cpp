#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"

#include <limits>

#include <gtest/gtest.h>

#include "TimeZones.h"
#include "TriggerResult.h"

namespace Qel {

namespace {

const std::set<int> allMonths{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
constexpr int sunday = 0, monday = 1, wednesday = 3, friday = 5;
constexpr int lastWeek = 6;

QelSchedulerMonthlyDayOfWeekTrigger nth(const std::set<int>& weekDays, const std::set<int>& weekNumbers,
                                        const std::set<int>& months, long start, long end = qelNoTime) {
    QelSchedulerMonthlyDayOfWeekTrigger trigger(start, end);
    trigger.weekDays = weekDays;
    trigger.weekNumbers = weekNumbers;
    trigger.months = months;
    return trigger;
}

class QelSchedulerMonthlyDayOfWeekTriggerTest : public ZoneTest {
protected:
    static long at(int year, int month, int day, int hour = 0) { return standard(GetParam(), year, month, day, hour); }
    static long start(int year, int month, int day, int hour = 0) { return local(year, month, day, hour); }
};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerMonthlyDayOfWeekTriggerTest, testing::ValuesIn(testZones), zoneTestName);

// The Mondays of January 2024 are the 1st, 8th, 15th, 22nd and 29th.
TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, RunsOnItsDaysAtTimeOfStart) {
    const QelSchedulerMonthlyDayOfWeekTrigger trigger = nth({monday}, {2, lastWeek}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(nextRun(trigger, start(2024, 1, 1, 3)), runAt(at(2024, 1, 8, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 1, 8, 3) - 1), runAt(at(2024, 1, 8, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 1, 8, 3)), runAt(at(2024, 1, 29, 3)));
    EXPECT_EQ(nextRun(trigger, at(2024, 1, 29, 3)), runAt(at(2024, 2, 12, 3)));
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, ConsidersCurrentMonth) {
    const QelSchedulerMonthlyDayOfWeekTrigger trigger = nth({monday}, {2}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(nextRun(trigger, start(2024, 6, 2)), runAt(at(2024, 6, 10, 3)));
    EXPECT_EQ(nextRun(trigger, start(2027, 2, 2)), runAt(at(2027, 2, 8, 3)));
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, FutureStartDeterminesMonth) {
    const QelSchedulerMonthlyDayOfWeekTrigger trigger = nth({monday}, {3}, allMonths, start(2024, 5, 10, 3));
    EXPECT_EQ(nextRun(trigger, start(2024, 1, 1)), runAt(at(2024, 5, 20, 3)));
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, RunBeforeStartDiscardsRestOfMonth) {
    EXPECT_EQ(nextRun(nth({monday}, {2, 4}, allMonths, start(2024, 1, 10, 3)), start(2024, 1, 2)),
              runAt(at(2024, 2, 12, 3)))
        << "22 January is not considered";
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, RejectsMonthWithoutDay) {
    EXPECT_EQ(nextRun(nth({friday}, {5}, allMonths, start(2024, 1, 1)), start(2024, 1, 1)), failure)
        << "March is not considered";
    EXPECT_EQ(nextRun(nth({wednesday}, {5}, {1, 2}, start(2024, 1, 1)), start(2024, 1, 31, 12)), failure) << "February";
    EXPECT_EQ(nextRun(nth({wednesday}, {5}, {1, 5}, start(2024, 1, 1)), start(2024, 1, 31, 12)),
              runAt(at(2024, 5, 29)));
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, SkipsMonthsNotInSet) {
    EXPECT_EQ(nextRun(nth({sunday}, {1}, {2, 12}, start(2024, 3, 1, 3)), start(2024, 3, 1, 3)),
              runAt(at(2024, 12, 1, 3)));
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, EndAppliesToTheGivenTimeAndNotToTheRun) {
    const long end = start(2024, 1, 3);
    const QelSchedulerMonthlyDayOfWeekTrigger trigger = nth({monday}, {2}, allMonths, start(2024, 1, 1, 3), end);
    EXPECT_EQ(nextRun(trigger, end), runAt(at(2024, 1, 8, 3))) << "after the end";
    EXPECT_EQ(nextRun(nth({monday}, {1}, allMonths, start(2024, 1, 2), end), end), runAt(at(2024, 2, 5)));
    EXPECT_EQ(nextRun(trigger, end + 1), noMoreRuns);
    EXPECT_EQ(nextRun(nth({}, {}, {}, start(2024, 1, 1), end), end + 1), noMoreRuns);
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, RejectsEmptySetsAndNegativeTimes) {
    const long first = start(2024, 1, 1);
    EXPECT_EQ(nextRun(nth({}, {1}, {1}, first), first), failure);
    EXPECT_EQ(nextRun(nth({1}, {}, {1}, first), first), failure);
    EXPECT_EQ(nextRun(nth({1}, {1}, {}, first), first), failure);
    EXPECT_EQ(nextRun(nth({1}, {1}, {0, 13}, first), first), failure);
    EXPECT_EQ(nextRun(nth({1}, {1}, {1}, first), -1), failure);
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, RejectsInvalidWeekNumber) {
    const long first = start(2024, 1, 1);
    EXPECT_EQ(nextRun(nth({monday}, {0, 2}, allMonths, first), first), failure);
    EXPECT_EQ(nextRun(nth({monday}, {2, 7}, allMonths, first), first), failure);
}

TEST_P(QelSchedulerMonthlyDayOfWeekTriggerTest, RejectsDatesOutOfRange) {
    constexpr long last = std::numeric_limits<long>::max();
    if (sizeof(long) == 4) {
        EXPECT_EQ(nextRun(nth({friday}, {1}, allMonths, start(2038, 1, 1)), start(2038, 1, 2)), noMoreRuns);
        EXPECT_EQ(nextRun(nth({friday}, {2}, allMonths, start(2038, 1, 1)), start(2038, 1, 2)), runAt(at(2038, 1, 8)));
        EXPECT_EQ(nextRun(nth({friday}, {4}, allMonths, start(2038, 1, 1)), start(2038, 1, 2)), noMoreRuns);
    } else {
        EXPECT_EQ(nextRun(nth({friday}, {1}, allMonths, last), 0), failure);
        EXPECT_EQ(nextRun(nth({friday}, {1}, allMonths, 0), last), failure);
    }
}

TEST(QelSchedulerMonthlyDayOfWeekTriggerClockTest, RunAtStartDiscardsRestOfMonth) {
    const ScopedTimeZone zone("Asia/Kolkata");
    EXPECT_EQ(nextRun(nth({monday}, {2, 4}, {1}, local(2024, 1, 8, 3)), local(2024, 1, 2)),
              runAt(local(2025, 1, 13, 3)));
}

TEST(QelSchedulerMonthlyDayOfWeekTriggerClockTest, SummerRunsAreOneHourLateOnWallClock) {
    const ScopedTimeZone zone("Europe/Berlin");
    const QelSchedulerMonthlyDayOfWeekTrigger trigger = nth({sunday}, {lastWeek}, allMonths, local(2024, 1, 1, 5));
    EXPECT_EQ(nextRun(trigger, local(2024, 3, 2)), runAt(local(2024, 3, 31, 6))) << "the day of the change";
    EXPECT_EQ(nextRun(trigger, local(2024, 7, 2)), runAt(local(2024, 7, 28, 6)));
    EXPECT_EQ(nextRun(trigger, local(2024, 10, 2)), runAt(local(2024, 10, 27, 5))) << "and back";
}

} // namespace

} // namespace Qel
