#pragma once

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// Runs every `interval` days, on working days or on weekends, at the time of day of `start` in UTC: a daylight saving
/// change moves the runs on the wall clock.
///
/// A `start` in the future is the first run, on any day and even after `end`.
struct QelSchedulerDailyTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    QelOptionalProperty<int> interval; ///< days between runs; 0 means unset; takes precedence over the flags
    bool weekdaysOnly = false;         ///< Monday to Friday, local time
    /// Stored only.  A trigger with neither `interval` nor `weekdaysOnly` runs on weekends.
    bool weekendsOnly = false;

    using Reader = QelRecordReader<QelSchedulerDailyTrigger>;
    using Writer = QelRecordWriter<QelSchedulerDailyTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerDailyTrigger, QelSchedulerTrigger> factoryQelSchedulerDailyTrigger;

} // namespace Qel
