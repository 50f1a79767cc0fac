#include "QelFunctionalityCore/Scheduling/QelWeeklyCalculator.h"

#include <limits>

#include <gmock/gmock.h>

#include "TimeZones.h"

namespace Qel::Weekly {

namespace {

using boost::gregorian::date;
using testing::ElementsAre;

TEST(QelWeeklyCalculatorTest, NormalisesWeekDaysToMonday1ToSunday7) {
    for (int day = 1; day <= 7; ++day)
        EXPECT_EQ(Calculator::weekDay(day), day);
    EXPECT_EQ(Calculator::weekDay(0), 7);
    EXPECT_EQ(Calculator::weekDay(14), 7);
    EXPECT_EQ(Calculator::weekDay(-1), 6);
    EXPECT_EQ(Calculator::weekDay(8), 8);
    EXPECT_EQ(Calculator::weekDay(std::numeric_limits<int>::min()), 5);
    EXPECT_EQ(Calculator::weekDay(std::numeric_limits<int>::max()), 8);
}

TEST(QelWeeklyCalculatorTest, BothNumbersOfSundayAreOneDay) {
    const Calculator calculator(3, {0, 2, 7});
    EXPECT_EQ(calculator.weeks, 3);
    EXPECT_THAT(calculator.days, ElementsAre(2, 7));
}

// 1 January is a Monday in 2024, a Wednesday in 2025, a Sunday in 2023.
TEST(QelWeeklyCalculatorTest, OffsetsAreRelativeToFirstOfJanuary) {
    const Calculator mondays(2, {1});
    EXPECT_EQ(mondays.doNext(0, 1), 0);
    EXPECT_EQ(mondays.doNext(1, 2), 14);
    EXPECT_EQ(mondays.doNext(7, 1), 14) << "week 1 is inactive";
    EXPECT_EQ(mondays.doNext(date(2025, 1, 1)), 12) << "week 0 has no Monday left";
    EXPECT_EQ(mondays.doNext(date(2024, 12, 30)), 364);
}

TEST(QelWeeklyCalculatorTest, SundayFirstOfJanuaryIsSeparateWeek) {
    EXPECT_EQ(Calculator(1, {7}).doNext(date(2023, 1, 1)), 0);
    EXPECT_EQ(Calculator(2, {7}).doNext(date(2023, 1, 1)), 7) << "week -1 is active only if every week is";
    EXPECT_EQ(Calculator(1, {1}).doNext(date(2023, 1, 1)), 1);
    EXPECT_EQ(Calculator(2, {1}).doNext(date(2023, 1, 1)), 1);
}

TEST(QelWeeklyCalculatorTest, DateItselfMayBeRunDay) {
    EXPECT_EQ(Calculator(1, {3}).next(date(2025, 1, 1)), date(2025, 1, 1));
    EXPECT_EQ(Calculator(1, {3}).next(date(2025, 1, 2)), date(2025, 1, 8));
}

TEST(QelWeeklyCalculatorTest, WeekNumbersRestartOnFirstOfJanuary) {
    const Calculator thirdMondays(3, {1});
    EXPECT_EQ(thirdMondays.next(date(2024, 12, 17)), date(2024, 12, 23)) << "week 51";
    EXPECT_EQ(thirdMondays.next(date(2024, 12, 24)), date(2025, 1, 20)) << "week 3";
    EXPECT_EQ(Calculator(52, {1}).next(date(2024, 1, 2)), date(2024, 12, 30)) << "week 52";
    EXPECT_EQ(Calculator(2, {5}).next(date(2024, 12, 30)), date(2025, 1, 3)) << "week 52 belongs to two years";
}

TEST(QelWeeklyCalculatorTest, RejectsTimesOutOfRange) {
    const Calculator daily(1, {1, 2, 3, 4, 5, 6, 7});
    constexpr std::int64_t first = -17'987'443'200; // 1400-01-01
    constexpr std::int64_t last = 253'086'768'000;  // 9990-01-01
    EXPECT_EQ(daily.next(first, first), first + testDay);
    EXPECT_EQ(daily.next(last - 1, 0), last);
    EXPECT_EQ(daily.next(first - 1, 0), -1);
    EXPECT_EQ(daily.next(last, 0), -1);
    EXPECT_EQ(daily.next(0, first - 1), -1);
    EXPECT_EQ(daily.next(0, last), -1);
    EXPECT_EQ(daily.next(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()), -1);
}

TEST(QelWeeklyCalculatorTest, HandlesTimesBeforeEpoch) {
    const Calculator daily(1, {1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(daily.next(-testDay, 3600), 3600) << "before the start";
    EXPECT_EQ(daily.next(-testDay - 1, -10 * testDay + 3600), -testDay + 3600);
    EXPECT_EQ(daily.next(-testDay + 3600, -10 * testDay + 3600), 3600);
}

} // namespace

} // namespace Qel::Weekly
