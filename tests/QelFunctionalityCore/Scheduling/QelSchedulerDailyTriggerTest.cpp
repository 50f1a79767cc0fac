#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"

#include <limits>

#include <gtest/gtest.h>

#include "TimeZones.h"
#include "TriggerAnswer.h"

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

TEST_P(QelSchedulerDailyTriggerTest, RunsEverySoManyDays) {
    const QelSchedulerDailyTrigger trigger = everyDays(2, noon);
    EXPECT_EQ(ask(trigger, 2 * testDay + noon), runAt(4 * testDay + noon));
    EXPECT_EQ(ask(trigger, 2 * testDay + noon - 1), runAt(2 * testDay + noon));
    EXPECT_EQ(ask(trigger, noon), runAt(2 * testDay + noon));
}

TEST_P(QelSchedulerDailyTriggerTest, AnIntervalGoesBeforeTheFlags) {
    QelSchedulerDailyTrigger trigger = everyDays(1, local(2024, 1, 5, 10)); // a Friday
    trigger.weekdaysOnly = true;
    EXPECT_EQ(ask(trigger, local(2024, 1, 5, 10)), runAt(local(2024, 1, 6, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, AnIntervalOfZeroIsNone) {
    QelSchedulerDailyTrigger trigger = everyDays(0, local(2024, 1, 1, 10));
    EXPECT_EQ(ask(trigger, local(2024, 1, 2, 11)), runAt(local(2024, 1, 6, 10))) << "weekends only";
    trigger.weekdaysOnly = true;
    EXPECT_EQ(ask(trigger, local(2024, 1, 2, 11)), runAt(local(2024, 1, 3, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, AnIntervalThatIsNotSpecifiedIsNoneWhateverItHolds) {
    QelSchedulerDailyTrigger trigger = everyDays(3, local(2024, 1, 1, 10));
    trigger.interval.specify(false);
    EXPECT_EQ(ask(trigger, local(2024, 1, 2, 11)), runAt(local(2024, 1, 6, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, ANegativeIntervalLeadsBack) {
    EXPECT_EQ(ask(everyDays(-1, noon), 5 * testDay), runAt(3 * testDay + noon));
}

TEST_P(QelSchedulerDailyTriggerTest, OnWeekdaysASaturdayAndASundayBecomeTheMonday) {
    const QelSchedulerDailyTrigger trigger = onWeekdays(local(2024, 1, 1, 10));
    EXPECT_EQ(ask(trigger, local(2024, 1, 4, 10)), runAt(local(2024, 1, 5, 10)));
    EXPECT_EQ(ask(trigger, local(2024, 1, 5, 10)), runAt(local(2024, 1, 8, 10)));
    EXPECT_EQ(ask(trigger, local(2024, 1, 6, 10)), runAt(local(2024, 1, 8, 10)));
    EXPECT_EQ(ask(trigger, local(2024, 1, 7, 9)), runAt(local(2024, 1, 8, 10)));
    EXPECT_EQ(ask(trigger, local(2024, 1, 7, 10)), runAt(local(2024, 1, 8, 10)));
}

TEST_P(QelSchedulerDailyTriggerTest, ARunMayPassTheEndByThatCorrectionOnly) {
    const long friday = local(2024, 1, 5, 10);
    EXPECT_EQ(ask(onWeekdays(local(2024, 1, 1, 10), friday + 3 * testDay), friday), runAt(friday + 3 * testDay));
    EXPECT_EQ(ask(onWeekdays(local(2024, 1, 1, 10), friday + 3 * testDay - 1), friday), noMoreRuns)
        << "the Saturday would have been before the end";
}

TEST_P(QelSchedulerDailyTriggerTest, WithNeitherFlagNorIntervalItRunsOnWeekends) {
    QelSchedulerDailyTrigger trigger(local(2024, 1, 1, 10), qelNoTime);
    for (const bool flag : {false, true}) {
        trigger.weekendsOnly = flag; // makes no difference
        EXPECT_EQ(ask(trigger, local(2024, 1, 3, 10)), runAt(local(2024, 1, 6, 10))) << "a Thursday";
        EXPECT_EQ(ask(trigger, local(2024, 1, 6, 9)), runAt(local(2024, 1, 6, 10)));
        EXPECT_EQ(ask(trigger, local(2024, 1, 6, 10)), runAt(local(2024, 1, 7, 10)));
        EXPECT_EQ(ask(trigger, local(2024, 1, 7, 10)), runAt(local(2024, 1, 13, 10)));
    }
}

TEST_P(QelSchedulerDailyTriggerTest, AStartInTheFutureIsTheFirstRunWhateverDayItIs) {
    const long saturday = local(2024, 1, 6, 10);
    EXPECT_EQ(ask(onWeekdays(saturday), saturday - 1), runAt(saturday));
    EXPECT_EQ(ask(onWeekdays(saturday), saturday), runAt(saturday + 2 * testDay));
    EXPECT_EQ(ask(QelSchedulerDailyTrigger(local(2024, 1, 3, 10), qelNoTime), 0), runAt(local(2024, 1, 3, 10)));
    EXPECT_EQ(ask(onWeekdays(saturday, saturday - 100), saturday - 200), runAt(saturday)) << "even behind the end";
}

TEST_P(QelSchedulerDailyTriggerTest, BehindTheEndThereAreNoMoreRuns) {
    const QelSchedulerDailyTrigger trigger = everyDays(1, noon, 3 * testDay + noon);
    EXPECT_EQ(ask(trigger, 2 * testDay + noon), runAt(3 * testDay + noon)) << "a run at the end is one";
    EXPECT_EQ(ask(trigger, 3 * testDay + noon), noMoreRuns);
    EXPECT_EQ(ask(trigger, 3 * testDay + noon + 1), noMoreRuns);
    EXPECT_EQ(ask(everyDays(1, 9 * testDay, 3 * testDay), 4 * testDay), noMoreRuns) << "though the start is to come";
}

TEST_P(QelSchedulerDailyTriggerTest, ANegativeTimeHasNoAnswer) {
    EXPECT_EQ(ask(everyDays(1, noon), -1), noAnswer);
    EXPECT_EQ(ask(everyDays(1, noon, 5), -1), noAnswer);
}

TEST_P(QelSchedulerDailyTriggerTest, RunsStay86400SecondsApartAcrossBothChangesOfClocks) {
    for (const int month : {3, 4, 9, 10, 11}) {
        const long start = local(2024, month, 1, 12);
        const QelSchedulerDailyTrigger trigger = everyDays(1, start);
        for (long run = start; run < start + 31 * testDay; run += testDay)
            ASSERT_EQ(ask(trigger, run), runAt(run + testDay));
    }
}

TEST_P(QelSchedulerDailyTriggerTest, AnswersThatNoLongHoldsAreNone) {
    constexpr long last = std::numeric_limits<long>::max();
    EXPECT_EQ(ask(everyDays(1, 0), last), noMoreRuns);
    EXPECT_EQ(ask(everyDays(std::numeric_limits<int>::max(), 0, last - 1), last - 1), noMoreRuns);
    EXPECT_EQ(ask(everyDays(1, last), 0), runAt(last));
}

TEST_P(QelSchedulerDailyTriggerTest, AStartLongBeforeTheEpochIsAStartLikeAnyOther) {
    EXPECT_EQ(ask(everyDays(1, -10 * testDay + 5), 4), runAt(5));
    constexpr long first = std::numeric_limits<long>::min();
    const TriggerAnswer answer = ask(everyDays(1, first), 0);
    EXPECT_EQ(answer.result, 0);
    EXPECT_GT(answer.next, 0);
    EXPECT_LE(answer.next, testDay);
    EXPECT_EQ((static_cast<unsigned long>(answer.next) - static_cast<unsigned long>(first)) % testDay, 0U);
}

TEST(QelSchedulerDailyTriggerDateTest, ADayThatTheCalendarDoesNotReachHasNoAnswer) {
    if (sizeof(long) == 4)
        GTEST_SKIP() << "the calendar reaches every time that a long holds";
    constexpr long far = std::numeric_limits<long>::max() - 2 * testDay;
    EXPECT_EQ(ask(onWeekdays(0), far), noAnswer);
    EXPECT_EQ(ask(QelSchedulerDailyTrigger(0, qelNoTime), far), noAnswer);
}

TEST(QelSchedulerDailyTriggerDateTest, TheWeekDayIsThatOfLocalTime) {
    const long fridayNight = utc(2024, 1, 5, 23);
    {
        const ScopedTimeZone zone("UTC");
        EXPECT_EQ(ask(onWeekdays(fridayNight - testDay), fridayNight - 1), runAt(fridayNight));
    }
    const ScopedTimeZone zone("Europe/Berlin"); // where it is Saturday
    EXPECT_EQ(ask(onWeekdays(fridayNight - testDay), fridayNight - 1), runAt(fridayNight + 2 * testDay));
}

TEST(QelSchedulerDailyTriggerDateTest, ASundayOf25HoursMovesToItsOwnEvening) {
    // The clocks go back on Sunday, 27 October 2024: 86400 seconds behind its first half hour it is still Sunday.
    const ScopedTimeZone zone("Europe/Berlin");
    const long sunday = local(2024, 10, 27, 0, 30);
    EXPECT_EQ(ask(onWeekdays(sunday - 10 * testDay), sunday - 1), runAt(local(2024, 10, 27, 23, 30)));
}

} // namespace

} // namespace Qel
