#pragma once

#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Runs on the n-th week days of certain months, at the local time of day of `start`.
///
/// Only two months are considered: the current one, or that of `start` if it is in the future, and the next of `months`
/// after it.  If either has none of the week days, the call fails.  If the next run in the month is not after `start`,
/// the later ones of that month are skipped.  `end` is only compared with the current time, so a run may be after it.
/// During daylight saving time, runs are one hour late on the wall clock.
struct QEL_EXPORT QelSchedulerMonthlyDayOfWeekTrigger
    : QelRecord<QelSchedulerMonthlyDayOfWeekTrigger, QelSchedulerTrigger> {
    using QelRecord::QelRecord;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    std::set<int> weekDays;    ///< 0 for Sunday to 6 for Saturday; must not be empty
    std::set<int> weekNumbers; ///< 1 to 5, and 6 for the last one; must not be empty or contain other numbers
    std::set<int> months;      ///< 1 to 12; must not be empty

    static const QelWireLayout& wire;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelSchedulerMonthlyDayOfWeekTrigger, QelSchedulerTrigger>
    factoryQelSchedulerMonthlyDayOfWeekTrigger;

} // namespace Qel
