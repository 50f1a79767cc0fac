#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"

#include <limits>

#include <gtest/gtest.h>

#include "TimeZones.h"
#include "TriggerAnswer.h"

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
    /// A time by clocks that stay at standard time, as those of the trigger do.
    static long at(int year, int month, int day, int hour = 0) { return standard(GetParam(), year, month, day, hour); }
    /// A start at that time of day by the clocks of its own season.
    static long start(int year, int month, int day, int hour = 0) { return local(year, month, day, hour); }
};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerMonthlyTriggerTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(QelSchedulerMonthlyTriggerTest, RunsOnItsDaysAtTheTimeOfDayOfTheStart) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5, 20}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(ask(trigger, start(2024, 1, 1, 3)), runAt(at(2024, 1, 5, 3)));
    EXPECT_EQ(ask(trigger, at(2024, 1, 5, 3) - 1), runAt(at(2024, 1, 5, 3)));
    EXPECT_EQ(ask(trigger, at(2024, 1, 5, 3)), runAt(at(2024, 1, 20, 3)));
    EXPECT_EQ(ask(trigger, at(2024, 1, 20, 3)), runAt(at(2024, 2, 5, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, TheLastDayOfFebruaryIsItsInCommonAndInLeapYears) {
    EXPECT_EQ(ask(monthly({lastDay}, {2}, start(2024, 2, 3, 4)), start(2024, 2, 3, 4)), runAt(at(2024, 2, 29, 4)));
    EXPECT_EQ(ask(monthly({lastDay}, {2}, start(2023, 2, 3, 4)), start(2023, 2, 3, 4)), runAt(at(2023, 2, 28, 4)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, MonthsAfterTheStartTheAnswerIsATimeThatHasPassed) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(ask(trigger, start(2024, 6, 1)), runAt(at(2024, 2, 6, 3))) << "the end of the run in February";
    EXPECT_EQ(ask(monthly({lastDay}, allMonths, start(2024, 1, 1, 3)), start(2024, 6, 1)), runAt(at(2024, 3, 1)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, BehindTheLastRunThatIsLookedAtTheEndOfItsDayIsTheAnswer) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(ask(trigger, at(2024, 2, 5, 3)), runAt(at(2024, 2, 6, 3)));
    EXPECT_EQ(ask(trigger, at(2024, 2, 6, 3)), runAt(at(2024, 2, 6, 3))) << "which isn't later any more";
}

TEST_P(QelSchedulerMonthlyTriggerTest, InALaterYearTheMonthBehindThatOfTheStartIsLookedAt) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, allMonths, start(2024, 1, 1, 3));
    EXPECT_EQ(ask(trigger, start(2026, 1, 10)), runAt(at(2026, 2, 5, 3)));
    EXPECT_EQ(ask(trigger, start(2026, 1, 2)), runAt(at(2026, 2, 5, 3))) << "January is looked for in 2024";
    EXPECT_EQ(ask(trigger, start(2026, 3, 1)), runAt(at(2026, 2, 6, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, AStartOn29FebruaryHasNoAnswerInALaterCommonYear) {
    EXPECT_EQ(ask(monthly({5}, allMonths, start(2024, 2, 29)), start(2025, 1, 1)), noAnswer);
    EXPECT_EQ(ask(monthly({28}, {2}, start(2024, 2, 29)), start(2025, 1, 1)), noAnswer);
}

TEST_P(QelSchedulerMonthlyTriggerTest, InALeapYearAFebruaryStartOfACommonYearHasNoAnswer) {
    EXPECT_EQ(ask(monthly({5}, {2}, start(2023, 2, 10)), start(2024, 1, 1)), noAnswer)
        << "the 29th is looked for in 2023";
}

TEST_P(QelSchedulerMonthlyTriggerTest, AFebruaryStartOfALeapYearBeginsItsMonthByTheDaysOfACommonOne) {
    // The 28th isn't the last day in 2024: its day ends on the 29th at noon, 28 days and another noon before that is
    // 2 February at midnight.
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, {2}, start(2024, 2, 10, 12));
    EXPECT_EQ(ask(trigger, start(2025, 1, 1)), runAt(at(2026, 2, 5, 12)));
    EXPECT_EQ(ask(monthly({1}, {2}, start(2024, 2, 10, 12)), start(2025, 1, 1)), noAnswer);
}

TEST_P(QelSchedulerMonthlyTriggerTest, TheOnlyMonthComesAgainAYearLater) {
    const QelSchedulerMonthlyTrigger trigger = monthly({5}, {3}, start(2024, 3, 1, 3));
    EXPECT_EQ(ask(trigger, start(2024, 3, 1, 3)), runAt(at(2024, 3, 5, 3)));
    EXPECT_EQ(ask(trigger, at(2024, 3, 5, 3)), runAt(at(2025, 3, 5, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, AMonthThatIsNotInTheSetIsPassedOver) {
    EXPECT_EQ(ask(monthly({5}, {2, 12}, start(2024, 3, 1, 3)), start(2024, 3, 1, 3)), runAt(at(2024, 12, 5, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, ARunOfTheStartsMonthMayLieBeforeTheStartAndBehindTheEnd) {
    EXPECT_EQ(ask(monthly({5}, {1}, start(2024, 1, 20, 3)), start(2024, 1, 2)), runAt(at(2024, 1, 5, 3)));
    EXPECT_EQ(ask(monthly({25}, {1}, start(2024, 1, 20, 3), start(2024, 1, 22)), start(2024, 1, 21)),
              runAt(at(2024, 1, 25, 3)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, ARunOfALaterMonthMustNotLieBehindTheEnd) {
    const long run = at(2024, 2, 5, 3);
    EXPECT_EQ(ask(monthly({5}, allMonths, start(2024, 1, 20, 3), run), start(2024, 1, 21)), runAt(run));
    EXPECT_EQ(ask(monthly({5}, allMonths, start(2024, 1, 20, 3), run - 1), start(2024, 1, 21)), noMoreRuns);
}

TEST_P(QelSchedulerMonthlyTriggerTest, BehindTheEndThereAreNoMoreRunsWithoutALookAtTheDays) {
    const long end = start(2024, 2, 1);
    EXPECT_EQ(ask(monthly({}, {}, start(2024, 1, 1), end), end + 1), noMoreRuns);
    EXPECT_EQ(ask(monthly({}, {1}, start(2024, 1, 1), end), end), noAnswer);
}

TEST_P(QelSchedulerMonthlyTriggerTest, EmptySetsAndNegativeTimesHaveNoAnswer) {
    const long first = start(2024, 1, 1);
    EXPECT_EQ(ask(monthly({}, {1}, first), first), noAnswer);
    EXPECT_EQ(ask(monthly({1}, {}, first), first), noAnswer);
    EXPECT_EQ(ask(monthly({1}, {1}, first), -1), noAnswer);
    EXPECT_EQ(ask(monthly({1}, {13}, first), first), noAnswer) << "no month at all";
}

TEST_P(QelSchedulerMonthlyTriggerTest, AMonthWithoutAnyOfTheDaysHasNoAnswer) {
    EXPECT_EQ(ask(monthly({31}, allMonths, start(2024, 4, 1)), start(2024, 4, 1)), noAnswer);
    EXPECT_EQ(ask(monthly({30}, allMonths, start(2024, 1, 31)), start(2024, 1, 31)), noAnswer) << "February";
}

TEST_P(QelSchedulerMonthlyTriggerTest, TheLastDayTwiceRunsInTheNextMonthToo) {
    const QelSchedulerMonthlyTrigger trigger = monthly({30, lastDay}, {4}, start(2024, 4, 1, 2));
    EXPECT_EQ(ask(trigger, at(2024, 4, 30, 2)), runAt(at(2024, 5, 2, 2)));
}

TEST_P(QelSchedulerMonthlyTriggerTest, WhereTheCalendarOrALongEndsThereIsNoAnswer) {
    constexpr long last = std::numeric_limits<long>::max();
    if (sizeof(long) == 4) {
        EXPECT_EQ(ask(monthly({5}, allMonths, start(2038, 1, 1)), start(2038, 1, 1)), runAt(at(2038, 1, 5)));
        EXPECT_EQ(ask(monthly({25}, allMonths, start(2038, 1, 1)), start(2038, 1, 1)), noMoreRuns);
        EXPECT_EQ(ask(monthly({5}, allMonths, start(2038, 1, 1)), last), noMoreRuns);
    } else {
        EXPECT_EQ(ask(monthly({5}, allMonths, last), 0), noAnswer);
        EXPECT_EQ(ask(monthly({5}, allMonths, 0), last), noAnswer);
    }
}

TEST(QelSchedulerMonthlyTriggerClockTest, RunsInSummerAreAnHourLateOnTheClocks) {
    const ScopedTimeZone zone("Europe/Berlin");
    const QelSchedulerMonthlyTrigger july = monthly({5}, allMonths, local(2024, 7, 1, 3));
    EXPECT_EQ(ask(july, local(2024, 7, 1, 3)), runAt(local(2024, 7, 5, 4)));
    const QelSchedulerMonthlyTrigger march = monthly({5, 31}, {3, 4}, local(2024, 3, 1, 3));
    EXPECT_EQ(ask(march, local(2024, 3, 1, 3)), runAt(local(2024, 3, 5, 3)));
    EXPECT_EQ(ask(march, local(2024, 3, 5, 3)), runAt(local(2024, 3, 31, 4))) << "the day of the change";
    EXPECT_EQ(ask(march, local(2024, 3, 31, 4)), runAt(local(2024, 4, 5, 4)));
    const QelSchedulerMonthlyTrigger october = monthly({26, 28}, {10}, local(2024, 10, 1, 3));
    EXPECT_EQ(ask(october, local(2024, 10, 1, 3)), runAt(local(2024, 10, 26, 4)));
    EXPECT_EQ(ask(october, local(2024, 10, 26, 4)), runAt(local(2024, 10, 28, 3)));
}

TEST(QelSchedulerMonthlyTriggerClockTest, InTheLastHourOfASummerDayTheMonthBeginsOnItsSecondDay) {
    const ScopedTimeZone zone("Europe/Berlin");
    const long start = local(2024, 7, 1, 23, 30);
    EXPECT_EQ(ask(monthly({1}, {7}, start), start), noAnswer);
    EXPECT_EQ(ask(monthly({5}, {7}, start), start), runAt(local(2024, 7, 5, 0, 30)));
}

} // namespace

} // namespace Qel
