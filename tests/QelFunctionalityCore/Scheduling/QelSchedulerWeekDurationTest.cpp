#include "QelFunctionalityCore/Scheduling/QelSchedulerWeekDuration.h"

#include <limits>

#include <gmock/gmock.h>

#include "TimeZones.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using Week = QelSchedulerWeekDuration;

std::vector<int> daysOf(const Week& week) {
    std::vector<int> numbers;
    for (const QelSchedulerDayDuration& day : week.days)
        numbers.push_back(day.day);
    return numbers;
}

class QelSchedulerWeekDurationTest : public ZoneTest {};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerWeekDurationTest, testing::ValuesIn(testZones), zoneTestName);

// 10 January 2024 is a Wednesday.
TEST_P(QelSchedulerWeekDurationTest, ExtendsFromStartToNextSunday) {
    const long start = local(2024, 1, 10, 6);
    const Week week(start, {0, 1, 3});
    ASSERT_TRUE(week.isValid());
    ASSERT_THAT(daysOf(week), ElementsAre(3, 0)) << "does not include the Monday";
    EXPECT_EQ(week.begin, start);
    EXPECT_EQ(week.days[0].end, start + testDay);
    EXPECT_EQ(week.days[1].begin, start + 4 * testDay);
    EXPECT_EQ(week.end, local(2024, 1, 15)) << "midnight of the Monday";
    EXPECT_EQ(week.days[1].end, week.end);
}

TEST_P(QelSchedulerWeekDurationTest, EveryDayBeginsAtTimeOfStart) {
    const long start = local(2024, 1, 8, 6);
    const Week week(start, {0, 1, 2, 3, 4, 5, 6});
    ASSERT_THAT(daysOf(week), ElementsAre(1, 2, 3, 4, 5, 6, 0));
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(week.days[static_cast<std::size_t>(i)].begin, start + i * testDay);
}

TEST_P(QelSchedulerWeekDurationTest, EndsWithLastDayWithoutSunday) {
    const long start = local(2024, 1, 10, 6);
    EXPECT_EQ(Week(start, {5}).end, start + 3 * testDay);
}

TEST_P(QelSchedulerWeekDurationTest, SundayStartHasOneDayAndEndsWithFollowingWeek) {
    const long start = local(2024, 1, 14, 6);
    const Week week(start, {0, 1, 6});
    ASSERT_THAT(daysOf(week), ElementsAre(0));
    EXPECT_EQ(week.begin, start);
    EXPECT_EQ(week.end, local(2024, 1, 22));
    EXPECT_FALSE(Week(start, {1, 2, 3, 4, 5, 6}).isValid());
}

TEST_P(QelSchedulerWeekDurationTest, IgnoresEarlierAndInvalidDays) {
    EXPECT_FALSE(Week(local(2024, 1, 10), {1, 2}).isValid());
    EXPECT_FALSE(Week(local(2024, 1, 10), {-1, 7, 10}).isValid());
    EXPECT_FALSE(Week(local(2024, 1, 10), {}).isValid());
}

TEST_P(QelSchedulerWeekDurationTest, WeekMayEndInNextMonthAndYear) {
    EXPECT_EQ(Week(local(2024, 12, 31, 6), {0}).end, local(2025, 1, 6));
}

TEST_P(QelSchedulerWeekDurationTest, FindsFirstRunAfterTime) {
    const long start = local(2024, 1, 10, 6);
    const Week week(start, {0, 3});
    EXPECT_EQ(week.getNextRunTime(start - 1), start);
    EXPECT_EQ(week.getNextRunTime(start), start + 4 * testDay);
    EXPECT_EQ(week.getNextRunTime(start + 4 * testDay), week.end);
    EXPECT_EQ(week.getNextRunTime(week.end + 1), week.end);
}

TEST_P(QelSchedulerWeekDurationTest, StartOutOfRangeIsInvalid) {
    EXPECT_FALSE(Week(std::numeric_limits<std::int64_t>::max(), {0}).isValid());
    EXPECT_FALSE(Week(std::numeric_limits<std::int64_t>::min(), {0}).isValid());
}

TEST(QelSchedulerWeekTest, MondayMidnightUsesUtcOffsetOfStart) {
    const ScopedTimeZone zone("Europe/Berlin");
    EXPECT_EQ(Week(local(2024, 7, 10, 6), {0}).end, local(2024, 7, 15));
    // The clocks change on Sunday, 31 March: the week continues in winter time.
    EXPECT_EQ(Week(local(2024, 3, 27, 6), {0}).end, local(2024, 4, 1, 1));
    // They change back on 27 October: it continues in summer time, one hour before midnight on the wall clock.
    EXPECT_EQ(Week(local(2024, 10, 23, 6), {0}).end, local(2024, 10, 27, 23));
}

} // namespace

} // namespace Qel
