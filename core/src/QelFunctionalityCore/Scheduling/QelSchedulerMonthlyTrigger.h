#pragma once

#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Runs on certain days of certain months, at the local time of day of `start`.
///
/// Only two months are considered: that of `start`, and the next of `months` after it, both in the year of `start` or
/// the current year, whichever is later.  Once their runs have passed, the result is the end of the last run day, even
/// when that has passed too.  If a considered month has none of the days, the call fails.  The month of `start` counts
/// as a whole, so a run may be before `start`, and also after `end`.  During daylight saving time, runs are one hour
/// late on the wall clock.
struct QEL_EXPORT QelSchedulerMonthlyTrigger : QelRecord<QelSchedulerMonthlyTrigger, QelSchedulerTrigger> {
    using QelRecord::QelRecord;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    std::set<int> days;   ///< 1 to 31, and 32 for the last day; must not be empty
    std::set<int> months; ///< 1 to 12; must not be empty

    static const QelWireLayout& wire;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelSchedulerMonthlyTrigger, QelSchedulerTrigger>
    factoryQelSchedulerMonthlyTrigger;

} // namespace Qel
