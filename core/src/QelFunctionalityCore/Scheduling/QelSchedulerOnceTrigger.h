#pragma once

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Runs once, at `start`.  `end` is ignored.
struct QelSchedulerOnceTrigger : QelRecord<QelSchedulerOnceTrigger, QelSchedulerTrigger> {
    using QelRecord::QelRecord;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    static const QelWireLayout& wire;
};

extern QelDerivedParserFactoryT<QelSchedulerOnceTrigger, QelSchedulerTrigger> factoryQelSchedulerOnceTrigger;

} // namespace Qel
