#pragma once

#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Runs on certain days of certain months, at the local time of day of `start`.
///
/// It looks at two months only: that of `start`, and the first of `months` behind it in the year of `start` or the
/// present one, whichever is later.  When their runs have passed, the answer is the end of the last one's day, and
/// stays so when that has passed too.  If a month that it looks at has none of the days, there is no answer.  The month
/// of `start` counts whole, so that a run may lie before `start`, and behind `end` too.  In summer time the runs are an
/// hour late on the clocks.
struct QelSchedulerMonthlyTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    std::set<int> days;   ///< 1 to 31, and 32 for the last day; empty gives no answer
    std::set<int> months; ///< 1 to 12; empty gives no answer

    using Reader = QelRecordReader<QelSchedulerMonthlyTrigger>;
    using Writer = QelRecordWriter<QelSchedulerMonthlyTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerMonthlyTrigger, QelSchedulerTrigger> factoryQelSchedulerMonthlyTrigger;

} // namespace Qel
