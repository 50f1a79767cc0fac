#pragma once

#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Runs on certain days of every n-th week, at the time of day of `start`.  Days and times are in UTC.  Weeks are
/// counted from 1 January of each year, not from `start`: see Weekly::Calculator.
struct QelSchedulerWeeklyTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    int weeks = 1;      ///< period in weeks, 1 to 52
    std::set<int> days; ///< 0 for Sunday to 6 for Saturday, 7 for Sunday too; must not be empty

    using Reader = QelRecordReader<QelSchedulerWeeklyTrigger>;
    using Writer = QelRecordWriter<QelSchedulerWeeklyTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerWeeklyTrigger, QelSchedulerTrigger> factoryQelSchedulerWeeklyTrigger;

} // namespace Qel
