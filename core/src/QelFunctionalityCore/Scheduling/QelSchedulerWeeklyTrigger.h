#pragma once

#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Runs on certain days of every n-th week, at the time of day of `start`.  Days and times are in UTC.  Weeks are
/// counted from 1 January of each year, not from `start`: see Weekly::Calculator.
struct QEL_EXPORT QelSchedulerWeeklyTrigger : QelRecord<QelSchedulerWeeklyTrigger, QelSchedulerTrigger> {
    using QelRecord::QelRecord;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    int weeks = 1;      ///< period in weeks, 1 to 52
    std::set<int> days; ///< 0 for Sunday to 6 for Saturday, 7 for Sunday too; must not be empty

    static const QelWireLayout& wire;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelSchedulerWeeklyTrigger, QelSchedulerTrigger>
    factoryQelSchedulerWeeklyTrigger;

} // namespace Qel
