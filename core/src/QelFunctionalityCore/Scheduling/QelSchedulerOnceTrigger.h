#pragma once

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

namespace Qel {

/// Runs once, at `start`.  `end` is ignored.
struct QelSchedulerOnceTrigger : QelSchedulerTrigger {
    using QelSchedulerTrigger::QelSchedulerTrigger;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    using Reader = QelRecordReader<QelSchedulerOnceTrigger>;
    using Writer = QelRecordWriter<QelSchedulerOnceTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelSchedulerOnceTrigger, QelSchedulerTrigger> factoryQelSchedulerOnceTrigger;

} // namespace Qel
