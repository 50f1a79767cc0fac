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

int makeLocalMidnight(int year, int month, int day, int isDst, std::int64_t& time) {
    constexpr int untouched = -1;
    std::tm local{};
    local.tm_year = year;
    local.tm_mon = month;
    local.tm_mday = day;
    local.tm_isdst = isDst;
    local.tm_wday = untouched; // -1 may be a time, so this tells whether mktime() gave one
    const std::int64_t made = std::mktime(&local);
    if (local.tm_wday == untouched)
        return -1;
    time = made;
    return 0;
}

} // namespace Qel
