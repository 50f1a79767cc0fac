#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthDuration.h"

#include <limits>

#include <gmock/gmock.h>

#include "TimeZones.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using Month = QelSchedulerMonthDuration;

constexpr int sunday = 0, monday = 1, tuesday = 2, friday = 5;

std::vector<int> daysOf(const Month& month) {
    std::vector<int> numbers;
    for (const QelSchedulerDayDuration& day : month.days)
        numbers.push_back(day.day);
    return numbers;
}

std::int64_t lengthOf(const QelSchedulerDayDuration& day) {
    return day.end - day.begin;
}

/// Expects exactly these days in a month counted from `start` on its first day, each 86400 seconds long.
void expectWholeDays(const Month& month, long start, const std::vector<int>& days) {
    ASSERT_EQ(daysOf(month), days);
    for (const QelSchedulerDayDuration& day : month.days) {
        EXPECT_EQ(day.begin, start + (day.day - 1) * testDay);
        EXPECT_EQ(lengthOf(day), testDay);
    }
    EXPECT_EQ(month.begin, start);
    EXPECT_EQ(month.end, start + days.back() * testDay);
}

/// Runs in every zone.  Ends of months are in standard time.
class QelSchedulerMonthDurationTest : public ZoneTest {
protected:
    static long midnight(int year, int month, int day) { return standard(GetParam(), year, month, day); }
};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerMonthDurationTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(QelSchedulerMonthDurationTest, ZoneIsInstalled) {
    std::tm january{};
    std::tm july{};
    const std::time_t winter = utc(2024, 1, 15, 12);
    const std::time_t summer = utc(2024, 7, 15, 12);
    ASSERT_TRUE(localtime_r(&winter, &january) && localtime_r(&summer, &july));
    EXPECT_EQ(std::min(january.tm_gmtoff, july.tm_gmtoff), GetParam().standardOffset);
    EXPECT_EQ(january.tm_gmtoff != july.tm_gmtoff, GetParam().hasSummerTime);
}

TEST_P(QelSchedulerMonthDurationTest, FindsLastDayOfEachMonth) {
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 0; month < 12; ++month)
        for (int year = 70; year < 138; ++year) {
            int last = 0;
            ASSERT_EQ(Month::getLastDayOfMonth(month, year, last), 0);
            EXPECT_EQ(last, lengths[month] + (month == 1 && year % 4 == 0)) << month << ' ' << year;
        }
}

TEST_P(QelSchedulerMonthDurationTest, CenturyIsLeapYearEvery400Years) {
    int last = 0;
    ASSERT_EQ(Month::getLastDayOfMonth(1, 200, last), 0);
    EXPECT_EQ(last, 28);
    ASSERT_EQ(Month::getLastDayOfMonth(1, 100, last), 0);
    EXPECT_EQ(last, 29);
}

TEST_P(QelSchedulerMonthDurationTest, RecognisesLastDay) {
    bool isLast = true;
    ASSERT_EQ(Month::isLastDayOfMonth(3, 124, 29, isLast), 0);
    EXPECT_FALSE(isLast);
    ASSERT_EQ(Month::isLastDayOfMonth(3, 124, 30, isLast), 0);
    EXPECT_TRUE(isLast);
}

TEST_P(QelSchedulerMonthDurationTest, RejectsYearOutOfRange) {
    constexpr int beyond = std::numeric_limits<int>::max();
    int last = 7;
    EXPECT_EQ(Month::getLastDayOfMonth(11, beyond, last), -1);
    EXPECT_EQ(last, 7);
    bool isLast = true;
    EXPECT_EQ(Month::isLastDayOfMonth(11, beyond, 31, isLast), -1);
    EXPECT_TRUE(isLast);
    int day = 7;
    EXPECT_EQ(Month::getNWeekDayOfMonth(11, beyond, monday, 1, day), -1);
    EXPECT_EQ(day, 7);
}

TEST_P(QelSchedulerMonthDurationTest, FindsNthWeekDay) {
    int day = 0;
    // April 2024 begins on a Monday and has five Mondays and Tuesdays, and four of the other week days.
    for (int n = 1; n <= 5; ++n) {
        ASSERT_EQ(Month::getNWeekDayOfMonth(3, 124, monday, n, day), 0);
        EXPECT_EQ(day, 7 * n - 6);
        ASSERT_EQ(Month::getNWeekDayOfMonth(3, 124, friday, n, day), 0);
        EXPECT_EQ(day, n == 5 ? -1 : 7 * n - 2) << "a missing fifth Friday is not an error";
        ASSERT_EQ(Month::getNWeekDayOfMonth(3, 124, sunday, n, day), 0);
        EXPECT_EQ(day, n == 5 ? -1 : 7 * n);
    }
}

TEST_P(QelSchedulerMonthDurationTest, WeekNumberSixIsLastOccurrence) {
    int day = 0;
    ASSERT_EQ(Month::getNWeekDayOfMonth(3, 124, tuesday, Month::lastWeek, day), 0);
    EXPECT_EQ(day, 30) << "the fifth";
    ASSERT_EQ(Month::getNWeekDayOfMonth(3, 124, friday, Month::lastWeek, day), 0);
    EXPECT_EQ(day, 26) << "the fourth";
    ASSERT_EQ(Month::getNWeekDayOfMonth(1, 123, tuesday, Month::lastWeek, day), 0);
    EXPECT_EQ(day, 28) << "on the last day";
}

TEST_P(QelSchedulerMonthDurationTest, RejectsOtherWeekNumbers) {
    int day = 3;
    for (const int n : {-1, 0, 7, 8}) {
        EXPECT_EQ(Month::getNWeekDayOfMonth(3, 124, monday, n, day), -1);
        EXPECT_EQ(day, 3);
    }
}

TEST_P(QelSchedulerMonthDurationTest, LastDayExtendsToEndOfMonth) {
    const long start = local(2024, 2, 10, 3);
    const Month month(start, std::set{Month::lastDay});
    ASSERT_TRUE(month.isValid());
    ASSERT_THAT(daysOf(month), ElementsAre(29));
    EXPECT_EQ(month.begin, start + 19 * testDay);
    EXPECT_EQ(month.days[0].begin, month.begin);
    EXPECT_EQ(month.end, midnight(2024, 3, 1));
    EXPECT_EQ(month.days[0].end, month.end);
}

TEST_P(QelSchedulerMonthDurationTest, LastDayAsStartHasRestOfDay) {
    const Month month(midnight(2024, 1, 31) + 3600, Month::lastDay);
    ASSERT_THAT(daysOf(month), ElementsAre(31));
    EXPECT_EQ(lengthOf(month.days[0]), 23 * 3600);
    EXPECT_EQ(month.begin, midnight(2024, 1, 31) + 3600);
}

TEST_P(QelSchedulerMonthDurationTest, DecemberEndsWithYear) {
    EXPECT_EQ(Month(local(2023, 12, 4), 31).end, midnight(2024, 1, 1));
}

TEST_P(QelSchedulerMonthDurationTest, OtherDaysBeginAtTimeOfStartAndLastOneDay) {
    const long start = local(2024, 1, 1, 3, 30);
    const Month month(start, {1, 7, 20});
    expectWholeDays(month, start, {1, 7, 20});
}

TEST_P(QelSchedulerMonthDurationTest, DaylightSavingChangeMovesLaterRuns) {
    for (const int month : {3, 10, 11, 4, 9}) {
        const long start = local(2024, month, 1, 12);
        const Month runs(start, {1, 28});
        ASSERT_EQ(runs.days.size(), 2U);
        EXPECT_EQ(runs.days[1].begin - runs.days[0].begin, 27 * testDay) << month;
    }
}

TEST_P(QelSchedulerMonthDurationTest, IgnoresDaysNotInMonth) {
    const Month thirtyOne(local(2024, 4, 1), std::set{31});
    EXPECT_FALSE(thirtyOne.isValid());
    const Month both(local(2024, 4, 1), {31, Month::lastDay});
    EXPECT_TRUE(both.isValid());
    EXPECT_THAT(daysOf(both), ElementsAre(30));
}

TEST_P(QelSchedulerMonthDurationTest, IgnoresInvalidDays) {
    EXPECT_FALSE(Month(local(2024, 4, 1), {-1, 0, 31, 33, 64}).isValid());
    EXPECT_FALSE(Month(local(2024, 4, 1), std::set<int>()).isValid());
}

TEST_P(QelSchedulerMonthDurationTest, LastDayByNumberAndSentinelAddsDayOfNextMonth) {
    const long start = local(2024, 4, 1, 5);
    const Month april(start, {30, Month::lastDay});
    ASSERT_THAT(daysOf(april), ElementsAre(30, Month::lastDay));
    EXPECT_EQ(april.days[1].begin, start + 31 * testDay) << "2 May";
    EXPECT_EQ(lengthOf(april.days[1]), testDay);
    EXPECT_EQ(april.end, start + 32 * testDay);

    EXPECT_THAT(daysOf(Month(local(2023, 2, 1), {28, Month::lastDay})), ElementsAre(28, Month::lastDay));
    EXPECT_THAT(daysOf(Month(local(2024, 2, 1), {28, Month::lastDay})), ElementsAre(28, 29));
}

TEST_P(QelSchedulerMonthDurationTest, IgnoresDaysBeforeStart) {
    EXPECT_FALSE(Month(local(2024, 4, 6), std::set{5}).isValid());
    EXPECT_THAT(daysOf(Month(local(2024, 4, 6), {5, 6, 7})), ElementsAre(6, 7));
}

TEST_P(QelSchedulerMonthDurationTest, SingleDayEqualsSetOfOne) {
    const Month byDay(local(2024, 4, 6, 4), 20);
    const Month bySet(local(2024, 4, 6, 4), std::set{20});
    EXPECT_EQ(byDay.begin, bySet.begin);
    EXPECT_EQ(byDay.end, bySet.end);
    EXPECT_THAT(daysOf(byDay), ElementsAre(20));
    EXPECT_FALSE(Month(local(2024, 4, 6), 5).isValid());
}

TEST_P(QelSchedulerMonthDurationTest, SortsNthWeekDays) {
    const long start = local(2024, 4, 1, 9);
    const Month month(start, {sunday, monday}, {1, 3});
    expectWholeDays(month, start, {1, 7, 15, 21});
}

TEST_P(QelSchedulerMonthDurationTest, IgnoresNthWeekDaysBeforeStart) {
    EXPECT_THAT(daysOf(Month(local(2024, 4, 15), {monday}, {1, 2, 3, 4})), ElementsAre(15, 22));
    EXPECT_FALSE(Month(local(2024, 4, 16), {monday}, {1, 2, 3}).isValid());
}

TEST_P(QelSchedulerMonthDurationTest, IgnoresMissingFifthWeekDay) {
    EXPECT_THAT(daysOf(Month(local(2024, 4, 1), {friday, monday}, {5})), ElementsAre(29));
    EXPECT_FALSE(Month(local(2024, 4, 1), {friday}, {5}).isValid());
    EXPECT_THAT(daysOf(Month(local(2024, 4, 1), {friday}, {Month::lastWeek})), ElementsAre(26));
}

TEST_P(QelSchedulerMonthDurationTest, InvalidWeekNumberMakesSpanInvalid) {
    EXPECT_FALSE(Month(local(2024, 4, 1), {monday}, {0, 1}).isValid());
    EXPECT_FALSE(Month(local(2024, 4, 1), {monday}, {1, 7}).isValid());
}

TEST_P(QelSchedulerMonthDurationTest, PairsOnSameDayAreOneEntry) {
    EXPECT_THAT(daysOf(Month(local(2024, 4, 1), {friday}, {4, Month::lastWeek})), ElementsAre(26));
    EXPECT_THAT(daysOf(Month(local(2024, 4, 1), {tuesday}, {5, Month::lastWeek})), ElementsAre(30));
}

TEST_P(QelSchedulerMonthDurationTest, NthWeekDayOnLastDayExtendsToEndOfMonth) {
    const Month month(local(2024, 4, 1, 9), {tuesday}, {5});
    ASSERT_THAT(daysOf(month), ElementsAre(30));
    EXPECT_EQ(month.end, midnight(2024, 5, 1));
    EXPECT_EQ(month.days[0].end, month.end);
}

TEST_P(QelSchedulerMonthDurationTest, HasNoDaysWithoutWeekDaysOrNumbers) {
    EXPECT_FALSE(Month(local(2024, 4, 1), {}, {1}).isValid());
    EXPECT_FALSE(Month(local(2024, 4, 1), {monday}, std::set<int>()).isValid());
}

TEST_P(QelSchedulerMonthDurationTest, StartOutOfRangeIsInvalid) {
    for (const std::int64_t start : {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(),
                                     std::numeric_limits<std::int64_t>::max() / 2}) {
        EXPECT_FALSE(Month(start, std::set{1}).isValid());
        EXPECT_FALSE(Month(start, {monday}, {1}).isValid());
    }
}

TEST_P(QelSchedulerMonthDurationTest, MonthThatEndsAfter2038HasItsRuns) {
    const Month month(local(2038, 1, 1, 12), {5, Month::lastDay});
    ASSERT_THAT(daysOf(month), ElementsAre(5, 31));
    const std::int64_t lastRun = std::int64_t{local(2038, 1, 1, 12)} + 30 * testDay;
    EXPECT_EQ(month.days[1].begin, lastRun);
    const bool isSummer = std::string(GetParam().name) == "Pacific/Auckland";
    EXPECT_EQ(month.end, lastRun + 12 * 3600 + (isSummer ? 3600 : 0));
}

TEST(QelSchedulerMonthTest, EvaluatesNthWeekDayFromFirstWeekDay) {
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(3, 3, 1), 1);
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(3, 3, 5), 29);
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(1, 3, 1), 6);
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(0, 6, 2), 9);
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(5, 3, 1), 3);
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(6, 0, 6), 42) << "past the end of any month; the caller checks";
}

TEST(QelSchedulerMonthTest, AcceptsAnyNumberAsWeekDay) {
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(Month::evaluateNWeekDayOfMonth(most, 0, 6), most);
    EXPECT_LT(Month::evaluateNWeekDayOfMonth(std::numeric_limits<int>::min(), 6, 1), 0);
    const ScopedTimeZone zone("UTC");
    EXPECT_FALSE(Month(utc(2024, 4, 1), {std::numeric_limits<int>::min()}, {1, 6}).isValid());
    int day = 0;
    EXPECT_EQ(Month::getNWeekDayOfMonth(3, 124, most, 1, day), 0);
    EXPECT_EQ(day, -1);
}

TEST(QelSchedulerMonthTest, SummerMonthEndsOneHourLateOnWallClock) {
    const ScopedTimeZone zone("Europe/Berlin");
    EXPECT_EQ(Month(local(2024, 7, 1), 31).end, local(2024, 8, 1, 1));
    EXPECT_EQ(Month(local(2024, 12, 1), 31).end, local(2025, 1, 1, 0));
    EXPECT_EQ(Month(local(2024, 3, 1), 31).end, local(2024, 4, 1, 1));
    EXPECT_EQ(Month(local(2024, 10, 1), 31).end, local(2024, 11, 1, 0));
}

} // namespace

} // namespace Qel
