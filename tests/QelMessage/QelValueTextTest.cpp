#include "QelMessage/QelValueText.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "QelCommon/Strings.h"

namespace Qel {
namespace {

std::string time(long seconds) {
    return std::string(QelValueText::ofTime(seconds).view());
}
std::string timeZone(long seconds, int zone) {
    return std::string(QelValueText::ofTimeZone(seconds, zone).view());
}
std::string real(double value) {
    return std::string(QelValueText::ofDouble(value).view());
}

bool isTime(std::string_view text) {
    constexpr long untouched = 4711;
    constexpr int untouchedZone = 17;
    long seconds = untouched;
    int zone = untouchedZone;
    if (QelValueText::toTimeZone(text, seconds, zone))
        return true;
    EXPECT_EQ(seconds, untouched);
    EXPECT_EQ(zone, untouchedZone);
    EXPECT_FALSE(QelValueText::toTime(text, seconds));
    EXPECT_EQ(seconds, untouched);
    return false;
}
long timeOf(std::string_view text) {
    long seconds = -4711;
    EXPECT_TRUE(QelValueText::toTime(text, seconds)) << text;
    return seconds;
}
int zoneOf(std::string_view text) {
    long seconds = 0;
    int zone = -4711;
    EXPECT_TRUE(QelValueText::toTimeZone(text, seconds, zone)) << text;
    return zone;
}

TEST(QelValueTextTest, IntegersAreDecimal) {
    EXPECT_EQ(QelValueText::ofInteger(0).view(), "0");
    EXPECT_EQ(QelValueText::ofInteger(std::numeric_limits<long long>::min()).view(), "-9223372036854775808");
}

TEST(QelValueTextTest, DoublesUseTheShortestForm) {
    EXPECT_EQ(real(0.1), "0.1");
    EXPECT_EQ(real(1), "1");
    EXPECT_EQ(real(-0.0), "-0");
    EXPECT_EQ(real(1e300), "1e+300");
    EXPECT_EQ(real(1.0 / 3), "0.3333333333333333");
}

TEST(QelValueTextTest, DoublesRoundTrip) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        double read = 0;
        ASSERT_TRUE(parseNumber(real(value), read)) << real(value);
        ASSERT_TRUE(std::isnan(value) ? std::isnan(read) : read == value) << real(value);
    }
    for (const double value : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::max()}) {
        double read = 0;
        ASSERT_TRUE(parseNumber(real(value), read));
        EXPECT_EQ(read, value);
    }
}

TEST(QelValueTextTest, BooleansHaveFiveForms) {
    bool value = false;
    EXPECT_TRUE(QelValueText::toBool("1", value) && value);
    EXPECT_TRUE(QelValueText::toBool("0", value) && !value);
    EXPECT_TRUE(QelValueText::toBool("true", value) && value);
    EXPECT_TRUE(QelValueText::toBool("false", value) && !value);
    EXPECT_TRUE(QelValueText::toBool("", value) && value);
    for (const char* const text : {"2", "yes", "TRUE", " 1", "1 ", "01"})
        EXPECT_FALSE(QelValueText::toBool(text, value)) << text;
    EXPECT_TRUE(value);
}

TEST(QelValueTextTest, TimesAreDatesInUtc) {
    EXPECT_EQ(time(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(time(1795167000), "2026-11-20T09:30:00Z");
    EXPECT_EQ(time(-1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(time(951782400), "2000-02-29T00:00:00Z");
    EXPECT_EQ(timeOf("2026-11-20T09:30:00Z"), 1795167000);
    EXPECT_EQ(timeOf("1969-12-31T23:59:59Z"), -1);
}

TEST(QelValueTextTest, TimeWithAZoneIsWrittenAsLocalTime) {
    EXPECT_EQ(timeZone(0, 0), "1970-01-01T00:00:00+00:00");
    EXPECT_EQ(timeZone(0, 330), "1970-01-01T05:30:00+05:30");
    EXPECT_EQ(timeZone(0, -5), "1969-12-31T23:55:00-00:05");
    EXPECT_EQ(timeOf("1970-01-01T05:30:00+05:30"), 0);
    EXPECT_EQ(zoneOf("1970-01-01T05:30:00+05:30"), 330);
    EXPECT_EQ(zoneOf("1970-01-01T00:00:00-00:05"), -5);
    EXPECT_EQ(zoneOf("1970-01-01T00:00:00Z"), 0);
}

TEST(QelValueTextTest, NumberIsReadAsATime) {
    EXPECT_EQ(timeOf("1795167000"), 1795167000);
    EXPECT_EQ(timeOf("-1"), -1);
    EXPECT_EQ(zoneOf("5"), 0);
    EXPECT_EQ(timeOf("5+01:00"), 5);
    EXPECT_EQ(zoneOf("5-01:00"), -60);
}

TEST(QelValueTextTest, TimesAndZonesRoundTrip) {
    std::mt19937_64 random(1);
    const long least = std::numeric_limits<long>::min();
    const long most = std::numeric_limits<long>::max();
    const int leastZone = std::numeric_limits<int>::min();
    const int mostZone = std::numeric_limits<int>::max();
    const auto check = [](long seconds, int zone) {
        long read = 0;
        int readZone = 0;
        ASSERT_TRUE(QelValueText::toTime(time(seconds), read)) << time(seconds);
        ASSERT_EQ(read, seconds);
        ASSERT_TRUE(QelValueText::toTimeZone(timeZone(seconds, zone), read, readZone)) << timeZone(seconds, zone);
        ASSERT_EQ(read, seconds) << timeZone(seconds, zone);
        ASSERT_EQ(readZone, zone) << timeZone(seconds, zone);
    };
    for (const long seconds : {least, most, 0L, -1L, 1L})
        for (const int zone : {leastZone, mostZone, 0, 60, -60, 1439, -1439, 6000})
            check(seconds, zone);
    for (int i = 0; i < 20000; ++i) {
        check(std::uniform_int_distribution<long>(least, most)(random),
              std::uniform_int_distribution<int>(leastZone, mostZone)(random));
        check(std::uniform_int_distribution<long>(-2000000000, 2000000000)(random),
              std::uniform_int_distribution<int>(-1439, 1439)(random));
    }
}

TEST(QelValueTextTest, YearsOutside0To9999AreWrittenAsNumbers) {
    if constexpr (sizeof(long) == 8) {
        EXPECT_EQ(time(253402300799), "9999-12-31T23:59:59Z");
        EXPECT_EQ(time(253402300800), "253402300800");
        EXPECT_EQ(time(-62167219200), "0000-01-01T00:00:00Z");
        EXPECT_EQ(time(-62167219201), "-62167219201");
        EXPECT_EQ(timeZone(253402300799, 1), "253402300799+00:01");
    }
}

TEST(QelValueTextTest, RejectsTimesOutOfRange) {
    EXPECT_FALSE(isTime("99999999999999999999"));
    EXPECT_EQ(isTime("9999-12-31T23:59:59Z"), sizeof(long) == 8);
}

TEST(QelValueTextTest, RejectsMalformedTimes) {
    for (const char* const text : {"",
                                   " ",
                                   "now",
                                   "2026-11-20",
                                   "2026-11-20T09:30:00",
                                   "2026-11-20 09:30:00Z",
                                   "2026-11-20T09:30:00z",
                                   " 2026-11-20T09:30:00Z",
                                   "2026-11-20T09:30:00Z ",
                                   "2026-13-20T09:30:00Z",
                                   "2026-00-20T09:30:00Z",
                                   "2026-02-29T09:30:00Z",
                                   "2026-11-00T09:30:00Z",
                                   "2026-11-31T09:30:00Z",
                                   "2026-11-20T24:30:00Z",
                                   "2026-11-20T09:60:00Z",
                                   "2026-11-20T09:30:60Z",
                                   "2026/11-20T09:30:00Z",
                                   "2026-11/20T09:30:00Z",
                                   "2026-11-20T09.30:00Z",
                                   "2026-11-20T09:30.00Z",
                                   "-026-11-20T09:30:00Z",
                                   "2026-1a-20T09:30:00Z",
                                   "2026-11-2aT09:30:00Z",
                                   "2026-11-20Ta9:30:00Z",
                                   "2026-11-20T09:a0:00Z",
                                   "2026-11-20T09:30:a0Z",
                                   "202a-11-20T09:30:00Z",
                                   "2026-11-20T09:30:00+1:00",
                                   "2026-11-20T09:30:00+0100",
                                   "2026-11-20T09:30:00+01:60",
                                   "2026-11-20T09:30:00+01:0a",
                                   "2026-11-20T09:30:00+a1:00",
                                   "2026-11-20T09:30:00+-1:00",
                                   "2026-11-20T09:30:00+35791395:00",
                                   "2026-11-20T09:30:00+307445734561825861:00",
                                   "2026-11-20T09:30:00-99999999999999999999:00",
                                   "5Z",
                                   "5+",
                                   "+",
                                   "5.0"})
        EXPECT_FALSE(isTime(text)) << text;
}

} // namespace
} // namespace Qel
