#include "QelFunctionalityCore/Scheduling/QelSchedulerDuration.h"

#include <algorithm>

namespace Qel {

QelSchedulerDuration::QelSchedulerDuration(std::int64_t beginTime, std::int64_t length)
    : begin(beginTime), end(beginTime) {
    if (__builtin_add_overflow(beginTime, length, &end)) {
        end = beginTime;
        setInvalid();
    }
}

QelSchedulerDuration::~QelSchedulerDuration() = default;

std::int64_t QelSchedulerPeriodDuration::getNextRunTime(std::int64_t t) const {
    if (begin > t)
        return begin;
    if (t <= end)
        for (const QelSchedulerDayDuration& day : days)
            if (day.begin > t)
                return day.begin;
    return end;
}

void QelSchedulerPeriodDuration::finish() {
    if (days.empty()) {
        setInvalid();
        return;
    }
    std::sort(days.begin(), days.end(), QelSchedulerDayDuration::dayGreater);
    begin = days.front().begin;
    end = days.back().end;
}

} // namespace Qel
