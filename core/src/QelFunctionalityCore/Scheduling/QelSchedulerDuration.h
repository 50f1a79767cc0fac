#pragma once

#include <cstdint>
#include <vector>

namespace Qel {

/// A span of time in which a scheduled task may run.  It lives as long as one question for the next run.
///
/// All times are seconds since the epoch, in 64 bits even where a long has 32: the end of a month may lie beyond the
/// last time that such a long can hold, and the runs in it not.
class QelSchedulerDuration {
public:
    /// A valid span from `beginTime` on, of `length` seconds.  One that ends beyond the last time of 64 bits is
    /// invalid.
    QelSchedulerDuration(std::int64_t beginTime, std::int64_t length);
    QelSchedulerDuration(const QelSchedulerDuration&) = default;
    QelSchedulerDuration& operator=(const QelSchedulerDuration&) = default;
    virtual ~QelSchedulerDuration();

    [[nodiscard]] bool isValid() const { return valid; }
    void setInvalid() { valid = false; }

    std::int64_t begin; ///< first instant
    std::int64_t end;
    bool valid = true; ///< false when the span couldn't be built; nothing else in it has a meaning then
};

/// One day on which a task runs, from the time of the run on.
class QelSchedulerDayDuration : public QelSchedulerDuration {
public:
    QelSchedulerDayDuration(std::int64_t beginTime, int dayNumber, std::int64_t length)
        : QelSchedulerDuration(beginTime, length), day(dayNumber) {}

    /// True if `a` begins before `b`.  The name says the opposite, but callers sort by it and get ascending days.
    static bool dayGreater(const QelSchedulerDayDuration& a, const QelSchedulerDayDuration& b) {
        return a.begin < b.begin;
    }

    int day; ///< its number in the month, or its week day (0 for Sunday) where the span is a week
};

/// A span with several run days.  If it is valid there is at least one, they ascend, and the span reaches from the
/// beginning of the first to the end of the last.
///
/// Each run day begins a multiple of 86400 seconds after the others, whether or not the clocks change in between.
class QelSchedulerPeriodDuration : public QelSchedulerDuration {
public:
    using QelSchedulerDuration::QelSchedulerDuration;

    /// The first run after `t`.  `end` as the answer means that the span has none left; it may lie before `t`.
    [[nodiscard]] std::int64_t getNextRunTime(std::int64_t t) const;

    std::vector<QelSchedulerDayDuration> days;

protected:
    /// Establishes what a valid span promises; invalid without a day.
    void finish();
};

} // namespace Qel
