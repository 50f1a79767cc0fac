#pragma once

#include <cstdint>
#include <vector>

#include "QelCommon/Export.h"

namespace Qel {

/// A time span in which a scheduled task may run; a temporary of one computation of the next run.
///
/// All times are seconds since the epoch, in 64 bits even if a long has 32: a month may end after the maximum of such a
/// long while its runs are before it.
class QEL_EXPORT QelSchedulerDuration {
public:
    /// A span of `length` seconds from `beginTime`.  Invalid if the end exceeds 64 bits.
    QelSchedulerDuration(std::int64_t beginTime, std::int64_t length);
    QelSchedulerDuration(const QelSchedulerDuration&) = default;
    QelSchedulerDuration& operator=(const QelSchedulerDuration&) = default;
    virtual ~QelSchedulerDuration();

    [[nodiscard]] bool isValid() const { return valid; }
    void setInvalid() { valid = false; }

    std::int64_t begin; ///< inclusive
    std::int64_t end;
    bool valid = true; ///< if false, the other members are meaningless
};

/// A single day on which a task runs, from the time of the run.
class QelSchedulerDayDuration : public QelSchedulerDuration {
public:
    QelSchedulerDayDuration(std::int64_t beginTime, int dayNumber, std::int64_t length)
        : QelSchedulerDuration(beginTime, length), day(dayNumber) {}

    /// Returns whether `a` begins before `b`, despite its name: callers sort by it in ascending order.
    // The public interface prescribes parameters by value.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    static bool dayGreater(QelSchedulerDayDuration a, QelSchedulerDayDuration b) { return a.begin < b.begin; }

    int day; ///< day of the month, or week day (0 for Sunday) if the span is a week
};

/// A span with several run days.  A valid one has at least one; they are in ascending order, and the span extends from
/// the beginning of the first to the end of the last.
///
/// Run days begin a multiple of 86400 seconds apart, even across a daylight saving change.
class QEL_EXPORT QelSchedulerPeriodDuration : public QelSchedulerDuration {
public:
    using QelSchedulerDuration::QelSchedulerDuration;

    /// Returns the first run after `t`, or `end` if no run is left; `end` may be before `t`.
    [[nodiscard]] std::int64_t getNextRunTime(std::int64_t t) const;

    std::vector<QelSchedulerDayDuration> days;

protected:
    /// Establishes the class invariant; without run days the span becomes invalid.
    void finish();
};

} // namespace Qel
