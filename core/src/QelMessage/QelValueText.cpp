#include "QelMessage/QelValueText.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "QelCommon/Strings.h"

namespace Qel::QelValueText {

namespace {

using Seconds = std::int64_t;

constexpr Seconds secondsPerMinute = 60;
constexpr long long minutesPerHour = 60;
constexpr Seconds secondsPerDay = 86400;

constexpr Seconds startOfYear(int year) {
    using namespace std::chrono;
    return sys_days{std::chrono::year{year} / January / 1}.time_since_epoch().count() * secondsPerDay;
}

/// The range of times whose year has four digits, in seconds since the epoch.
constexpr Seconds firstSecond = startOfYear(0);
constexpr Seconds lastSecond = startOfYear(10000) - 1;

/// Length of "2026-11-20T09:30:00".
constexpr std::size_t dateTimeLength = 19;

/// Returns false and writes nothing if the year does not have four digits.
bool appendDateTime(Text& text, Seconds seconds) noexcept {
    if (seconds < firstSecond || seconds > lastSecond)
        return false;
    using namespace std::chrono;
    const sys_time<std::chrono::seconds> time{std::chrono::seconds{seconds}};
    const auto midnight = floor<days>(time);
    const year_month_day date{midnight};
    const hh_mm_ss clock{time - midnight};
    const int length = std::snprintf(
        text.free(), text.room(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    text.extendTo(text.free() + length);
    return true;
}

/// The value of a string of digits; -1 if it contains any other character.
int digits(std::string_view text) noexcept {
    int number = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return -1;
        number = 10 * number + (digit - '0');
    }
    return number;
}

bool parseDateTime(std::string_view text, Seconds& seconds) noexcept {
    if (text.size() != dateTimeLength || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':')
        return false;
    const int year = digits(text.substr(0, 4));
    const int month = digits(text.substr(5, 2));
    const int day = digits(text.substr(8, 2));
    const int hour = digits(text.substr(11, 2));
    const int minute = digits(text.substr(14, 2));
    const int second = digits(text.substr(17, 2));
    if (year < 0 || month < 0 || day < 0 || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 ||
        second > 59)
        return false;
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                           std::chrono::day{static_cast<unsigned>(day)}};
    if (!date.ok())
        return false;
    const Seconds minutes = hour * minutesPerHour + minute;
    seconds =
        std::chrono::sys_days{date}.time_since_epoch().count() * secondsPerDay + minutes * secondsPerMinute + second;
    return true;
}

/// "Z", or a sign, two or more digits of hours, a colon and two digits of minutes.
bool parseZone(std::string_view text, int& zone) noexcept {
    if (text == "Z") {
        zone = 0;
        return true;
    }
    constexpr std::size_t shortest = 6; // "+01:00"
    if (text.size() < shortest || (text[0] != '+' && text[0] != '-') || text[text.size() - 3] != ':')
        return false;
    const std::string_view hoursText = text.substr(1, text.size() - 4);
    const int minutes = digits(text.substr(text.size() - 2));
    long long hours = 0;
    const bool areDigits = hoursText.find_first_not_of("0123456789") == std::string_view::npos;
    if (!areDigits || !parseNumber(hoursText, hours) || minutes < 0 || minutes >= minutesPerHour)
        return false;
    constexpr long long mostHours = std::numeric_limits<int>::max() / minutesPerHour + 1;
    if (hours > mostHours)
        return false;
    const long long east = (hours * minutesPerHour + minutes) * (text[0] == '-' ? -1 : 1);
    if (east < std::numeric_limits<int>::min() || east > std::numeric_limits<int>::max())
        return false;
    zone = static_cast<int>(east);
    return true;
}

/// A date and time with its zone, or a number of seconds with or without one.
bool parse(std::string_view text, Seconds& seconds, int& zone) noexcept {
    Seconds instant = 0;
    int east = 0;
    if (text.size() > dateTimeLength && text[10] == 'T') {
        if (!parseDateTime(text.substr(0, dateTimeLength), instant) || !parseZone(text.substr(dateTimeLength), east))
            return false;
        instant -= east * secondsPerMinute;
    } else {
        const std::size_t sign = text.find_first_of("+-", 1);
        long long number = 0;
        if (!parseNumber(text.substr(0, sign), number))
            return false;
        if (sign != std::string_view::npos && !parseZone(text.substr(sign), east))
            return false;
        instant = number;
    }
    seconds = instant;
    zone = east;
    return true;
}

} // namespace

Text ofInteger(long long value) noexcept {
    Text text;
    text.extendTo(std::to_chars(text.free(), text.end(), value).ptr);
    return text;
}

Text ofDouble(double value) noexcept {
    Text text;
    text.extendTo(std::to_chars(text.free(), text.end(), value).ptr);
    return text;
}

Text ofTime(long seconds) noexcept {
    Text text;
    if (!appendDateTime(text, seconds))
        return ofInteger(seconds);
    *text.free() = 'Z';
    text.extendTo(text.free() + 1);
    return text;
}

Text ofTimeZone(long seconds, int zone) noexcept {
    Text text;
    const bool isNear = seconds >= firstSecond && seconds <= lastSecond; // prevents overflow of the sum
    if (!isNear || !appendDateTime(text, seconds + zone * secondsPerMinute))
        text = ofInteger(seconds);
    const long long minutes = std::llabs(zone);
    const int length = std::snprintf(text.free(), text.room(), "%c%02lld:%02lld", zone < 0 ? '-' : '+',
                                     minutes / minutesPerHour, minutes % minutesPerHour);
    text.extendTo(text.free() + length);
    return text;
}

bool toBool(std::string_view text, bool& value) noexcept {
    const bool isTrue = text.empty() || text == "1" || text == "true";
    if (!isTrue && text != "0" && text != "false")
        return false;
    value = isTrue;
    return true;
}

bool toTime(std::string_view text, long& seconds) noexcept {
    int zone = 0;
    return toTimeZone(text, seconds, zone);
}

bool toTimeZone(std::string_view text, long& seconds, int& zone) noexcept {
    Seconds instant = 0;
    int east = 0;
    if (!parse(text, instant, east) || instant < std::numeric_limits<long>::min() ||
        instant > std::numeric_limits<long>::max())
        return false;
    seconds = static_cast<long>(instant);
    zone = east;
    return true;
}

} // namespace Qel::QelValueText
