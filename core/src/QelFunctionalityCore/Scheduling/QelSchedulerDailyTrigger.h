#pragma once

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// Runs every so many days, or on working days, or on weekends, at the time of day of `start` in seconds since midnight
/// UTC: a change of clocks moves the runs.
///
/// A `start` in the future is the first run, whatever day it is and even if it lies behind `end`.
struct QelSchedulerDailyTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    QelOptionalProperty<int> interval; ///< days from run to run; 0 as if not given; goes before the flags below
    bool weekdaysOnly = false;         ///< Monday to Friday, local time
    /// Carried only.  It is by having neither an interval nor `weekdaysOnly` that a trigger runs on weekends.
    bool weekendsOnly = false;

    using Reader = QelRecordReader<QelSchedulerDailyTrigger>;
    using Writer = QelRecordWriter<QelSchedulerDailyTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerDailyTrigger, QelSchedulerTrigger> factoryQelSchedulerDailyTrigger;

} // namespace Qel
