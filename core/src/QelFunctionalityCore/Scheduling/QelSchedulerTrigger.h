#pragma once

#include <list>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Sentinel for an unset time.
inline constexpr long qelNoTime = -1;

/// Computes the next run of a scheduled task.  The result depends only on the fields and the current time; a trigger
/// does not record past runs.
///
/// Times are seconds since the epoch.
struct QEL_EXPORT QelSchedulerTrigger : QelRecord<QelSchedulerTrigger> {
    QelSchedulerTrigger() = default;
    QelSchedulerTrigger(long startTime, long endTime) : start(startTime), end(endTime) {}
    QelSchedulerTrigger(const QelSchedulerTrigger&) = default;
    QelSchedulerTrigger& operator=(const QelSchedulerTrigger&) = default;
    virtual ~QelSchedulerTrigger();

    /// Computes the first run after `now`.  Sets `next` to -1 if there are no more runs, or the next one does not fit
    /// in a long.  Derived classes document their deviations.
    ///
    /// Returns -1 and leaves `next` unchanged on error: an invalid field, a negative `now` (except in the weekly
    /// trigger), or a date out of range.
    [[nodiscard]] virtual int getNextRunTime(long now, long& next) const = 0;

    long start = qelNoTime; ///< earliest run; determines the time of day
    long end = qelNoTime;   ///< latest run; -1 for no end

    /// Reader: fails if the start is missing.  Writer: fails if it is negative.
    static const QelWireLayout& wire;
};

using QelSchedulerTriggerList = std::list<boost::shared_ptr<QelSchedulerTrigger>>;

extern template class QelDerivedParserFactory<QelSchedulerTrigger>;

} // namespace Qel
