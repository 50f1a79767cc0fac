#pragma once

#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Runs on certain days of every so many weeks, at the time of day of `start`.  Days and times are those of UTC.  The
/// weeks count from each 1 January, not from `start`: see Weekly::Calculator.
struct QelSchedulerWeeklyTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    int weeks = 1;      ///< from active week to active week; 1 to 52, others give no answer
    std::set<int> days; ///< 0 for Sunday to 6 for Saturday, 7 for Sunday too; empty gives no answer

    using Reader = QelRecordReader<QelSchedulerWeeklyTrigger>;
    using Writer = QelRecordWriter<QelSchedulerWeeklyTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerWeeklyTrigger, QelSchedulerTrigger> factoryQelSchedulerWeeklyTrigger;

} // namespace Qel
