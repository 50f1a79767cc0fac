// A time_t of 64 bits on 32-bit machines, for this file alone: local times are computed beyond 2038 there too.
#if !defined(__LP64__)
#undef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#define _TIME_BITS 64
#endif

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"

namespace Qel {

static_assert(sizeof(std::time_t) == sizeof(std::int64_t));

int localTimeCopy(std::int64_t time, std::tm& out) {
    // The two together are localtime() without its static buffer, which threads would share.
    tzset();
    const std::time_t seconds = time;
    std::tm local{};
    if (!localtime_r(&seconds, &local))
        return -1;
    out = local;
    return 0;
}

namespace {

// mktime() and timegm() set the week day exactly when they succeed; -1, which they return on failure, may be a time.
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
