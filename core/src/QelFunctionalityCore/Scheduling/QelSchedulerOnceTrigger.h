#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Runs once, at `start`.  `end` is ignored.
struct QEL_EXPORT QelSchedulerOnceTrigger : QelRecord<QelSchedulerOnceTrigger, QelSchedulerTrigger> {
    using QelRecord::QelRecord;

    [[nodiscard]] int getNextRunTime(long now, long& next) const override;

    static const QelWireLayout& wire;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelSchedulerOnceTrigger, QelSchedulerTrigger> factoryQelSchedulerOnceTrigger;

} // namespace Qel
