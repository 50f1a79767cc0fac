#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace Qel {

/// A time zone that the tests run in.
struct TestZone {
    const char* name;
    long standardOffset; ///< offset of standard time from UTC in seconds
    bool hasSummerTime;
};

inline void PrintTo(const TestZone& zone, std::ostream* out) {
    *out << zone.name;
}

inline constexpr TestZone testZones[] = {
    {"UTC", 0, false},
    {"Europe/Berlin", 3600, true},
    {"America/New_York", -5 * 3600, true},
    {"Asia/Kolkata", 5 * 3600 + 1800, false},
    {"Pacific/Auckland", 12 * 3600, true},
};
inline constexpr TestZone utcZone = testZones[0];
inline constexpr TestZone berlin = testZones[1];

/// Sets the time zone of the process and restores it on destruction.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* name) {
        if (const char* const old = std::getenv("TZ"))
            m_old = old;
        setenv("TZ", name, 1);
        tzset();
    }
    ~ScopedTimeZone() {
        if (m_old)
            setenv("TZ", m_old->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    std::optional<std::string> m_old;
};

/// Runs each test in each zone.
class ZoneTest : public testing::TestWithParam<TestZone> {
protected:
    ScopedTimeZone zone{GetParam().name};
};

inline std::string zoneTestName(const testing::TestParamInfo<TestZone>& info) {
    std::string name = info.param.name;
    for (char& c : name)
        if (c == '/')
            c = '_';
    return name;
}

/// A date and time of day; months are 1 to 12.
inline std::tm civil(int year, int month, int day, int hour, int minute, int second) {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return parts;
}

/// Converts from UTC to seconds since the epoch.
inline long utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm parts = civil(year, month, day, hour, minute, second);
    return timegm(&parts);
}

/// Converts from local time in the current zone.
inline long local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm parts = civil(year, month, day, hour, minute, second);
    return std::mktime(&parts);
}

/// Converts from standard time of a zone, also in summer.
inline long standard(const TestZone& zone, int year, int month, int day, int hour = 0, int minute = 0) {
    return utc(year, month, day, hour, minute) - zone.standardOffset;
}

inline constexpr long testDay = 86400;

} // namespace Qel
