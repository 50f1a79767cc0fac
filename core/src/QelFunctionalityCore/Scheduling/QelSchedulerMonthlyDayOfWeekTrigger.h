#pragma once

#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Runs on the n-th week days of certain months, at the local time of day of `start`.
///
/// It looks at the present month, or that of `start` if that lies in the future, and at the first of `months` behind
/// it. If either has no such day at all, there is no answer.  If the month's next run isn't after `start`, the later
/// ones are given up.  `end` counts only once it has passed, so that a run may lie behind it.  In summer time the runs
/// are an hour late on the clocks.
struct QelSchedulerMonthlyDayOfWeekTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    std::set<int> weekDays;    ///< 0 for Sunday to 6 for Saturday; empty gives no answer
    std::set<int> weekNumbers; ///< 1 to 5, and 6 for the last one; empty or others give no answer
    std::set<int> months;      ///< 1 to 12; empty gives no answer

    using Reader = QelRecordReader<QelSchedulerMonthlyDayOfWeekTrigger>;
    using Writer = QelRecordWriter<QelSchedulerMonthlyDayOfWeekTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerMonthlyDayOfWeekTrigger, QelSchedulerTrigger>
    factoryQelSchedulerMonthlyDayOfWeekTrigger;

} // namespace Qel
