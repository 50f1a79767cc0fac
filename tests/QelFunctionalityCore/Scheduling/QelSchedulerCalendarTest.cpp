#include "QelFunctionalityCore/Scheduling/QelSchedulerCalendar.h"

#include <array>
#include <limits>
#include <ostream>

#include "TimeZones.h"

namespace Qel {

namespace {

class QelSchedulerRunTimeTest : public ZoneTest {};

INSTANTIATE_TEST_SUITE_P(Zones, QelSchedulerRunTimeTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(QelSchedulerRunTimeTest, IsWallClockTimeInSeconds) {
    for (const int month : {1, 4, 7, 10}) {
        long seconds = 0;
        ASSERT_EQ(getRunTime(local(2024, month, 15, 13, 45, 7), seconds), 0);
        EXPECT_EQ(seconds, 13 * 3600 + 45 * 60 + 7) << month;
        ASSERT_EQ(getRunTime(local(2024, month, 15), seconds), 0);
        EXPECT_EQ(seconds, 0) << month;
    }
}

TEST(QelSchedulerCalendarTest, ReevaluatesTimeZoneOnEachCall) {
    const ScopedTimeZone utcZone("UTC0");
    const long noon = utc(2024, 1, 15, 12);
    long seconds = 0;
    ASSERT_EQ(getRunTime(noon, seconds), 0);
    EXPECT_EQ(seconds, 12 * 3600);
    // Would fail without tzset(), which localtime() calls and localtime_r() does not.
    setenv("TZ", "EAST-5", 1);
    ASSERT_EQ(getRunTime(noon, seconds), 0);
    EXPECT_EQ(seconds, 17 * 3600);
}

TEST(QelSchedulerCalendarTest, RejectsTimeOutOfRange) {
    if (sizeof(long) == 4)
        GTEST_SKIP() << "every long value is in range of the calendar";
    long seconds = 9;
    EXPECT_EQ(getRunTime(std::numeric_limits<long>::max(), seconds), -1);
    EXPECT_EQ(getRunTime(std::numeric_limits<long>::min(), seconds), -1);
    EXPECT_EQ(seconds, 9);
}

/// Result of getNextMonth() with month and year.
struct NextMonth {
    NextMonth(int fromMonth, int fromYear, const std::set<int>& months)
        : month(fromMonth), year(fromYear), result(getNextMonth(month, year, months)) {}
    int month;
    int year;
    int result;
    friend bool operator==(const NextMonth& next, const std::array<int, 3>& expected) {
        return std::array{next.result, next.month, next.year} == expected;
    }
};

std::ostream& operator<<(std::ostream& out, const NextMonth& next) {
    return out << next.result << ": " << next.month << ' ' << next.year;
}

TEST(QelSchedulerCalendarTest, FindsNextMonthInSet) {
    const std::set<int> all{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    for (int month = 1; month < 12; ++month)
        EXPECT_EQ(NextMonth(month, 124, all), (std::array{0, month + 1, 124}));
    EXPECT_EQ(NextMonth(12, 124, all), (std::array{0, 1, 125}));
    EXPECT_EQ(NextMonth(3, 124, {2, 5, 9}), (std::array{0, 5, 124}));
    EXPECT_EQ(NextMonth(9, 124, {2, 5, 9}), (std::array{0, 2, 125}));
}

TEST(QelSchedulerCalendarTest, FindsSameMonthAYearLater) {
    EXPECT_EQ(NextMonth(5, 124, {5}), (std::array{0, 5, 125}));
    EXPECT_EQ(NextMonth(12, 124, {12}), (std::array{0, 12, 125}));
}

TEST(QelSchedulerCalendarTest, InvalidArgumentsChangeNothing) {
    EXPECT_EQ(NextMonth(5, 124, {}), (std::array{-1, 5, 124}));
    EXPECT_EQ(NextMonth(0, 124, {5}), (std::array{-1, 0, 124}));
    EXPECT_EQ(NextMonth(13, 124, {5}), (std::array{-1, 13, 124}));
    EXPECT_EQ(NextMonth(5, -1, {5}), (std::array{-1, 5, -1}));
    EXPECT_EQ(NextMonth(5, 0, {6}), (std::array{0, 6, 0}));
    constexpr int lastYear = std::numeric_limits<int>::max();
    EXPECT_EQ(NextMonth(12, lastYear, {13}), (std::array{-1, 12, lastYear}));
}

TEST(QelSchedulerCalendarTest, FailsAfterThreeYearsIfSetHasNoMonth) {
    EXPECT_EQ(NextMonth(5, 124, {0, 13}), (std::array{-1, 1, 127}));
    EXPECT_EQ(NextMonth(12, 124, {0, 13}), (std::array{-1, 1, 128}))
        << "a turn of the year in the first step is not counted";
}

} // namespace

} // namespace Qel
