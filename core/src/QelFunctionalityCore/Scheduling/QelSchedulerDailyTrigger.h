#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Runs every `interval` days, on working days or on weekends, at the time of day of `start` in UTC: a daylight saving
/// change moves the runs on the wall clock.
///
/// A `start` in the future is the first run, on any day and even after `end`.
struct QEL_EXPORT QelSchedulerDailyTrigger : QelRecord<QelSchedulerDailyTrigger, QelSchedulerTrigger> {
    using QelRecord::QelRecord;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    QelOptionalProperty<int> interval; ///< days between runs; 0 means unset; takes precedence over the flags
    bool weekdaysOnly = false;         ///< Monday to Friday, local time
    /// Stored only.  A trigger with neither `interval` nor `weekdaysOnly` runs on weekends.
    bool weekendsOnly = false;

    static const QelWireLayout& wire;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelSchedulerDailyTrigger, QelSchedulerTrigger>
    factoryQelSchedulerDailyTrigger;

} // namespace Qel
