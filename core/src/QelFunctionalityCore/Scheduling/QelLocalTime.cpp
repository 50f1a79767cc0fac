// Selects a 64-bit time_t on 32-bit machines, in this file only, so that local times after 2038 work there too.
#if !defined(__LP64__)
#undef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#define _TIME_BITS 64
#endif

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"

namespace Qel {

static_assert(sizeof(std::time_t) == sizeof(std::int64_t));

int localTimeCopy(std::int64_t time, std::tm& out) {
    // Equivalent to localtime() without its static buffer, which all threads share.
    tzset();
    const std::time_t seconds = time;
    std::tm local{};
    if (!localtime_r(&seconds, &local))
        return -1;
    out = local;
    return 0;
}

namespace {

// mktime() and timegm() set tm_wday if and only if they succeed.  Their error value -1 is also a valid time.
constexpr int untouched = -1;

std::tm midnightOf(int year, int month, int day, int isDst) {
    std::tm midnight{};
    midnight.tm_year = year;
    midnight.tm_mon = month;
    midnight.tm_mday = day;
    midnight.tm_isdst = isDst;
    midnight.tm_wday = untouched;
    return midnight;
}

} // namespace

int makeDate(int year, int month, int day, std::tm& out) {
    std::tm date = midnightOf(year, month, day, standardTime);
    static_cast<void>(timegm(&date));
    if (date.tm_wday == untouched)
        return -1;
    out = date;
    return 0;
}

int makeLocalMidnight(int year, int month, int day, int isDst, std::int64_t& time) {
    std::tm local = midnightOf(year, month, day, isDst);
    const std::int64_t made = std::mktime(&local);
    if (local.tm_wday == untouched)
        return -1;
    time = made;
    return 0;
}

} // namespace Qel
