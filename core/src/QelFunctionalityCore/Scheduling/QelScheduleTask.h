#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A scheduled task.  The service that owns tasks defines name, category and time; this library only stores and
/// forwards them.
struct QEL_EXPORT QelScheduleTask : QelRecord<QelScheduleTask> {
    QelGUID id;
    std::string taskName;
    std::string description;
    std::string category;
    QelSchedulerTriggerList triggers; ///< an empty list can be written but not read
    long taskTime = qelNoTime;        ///< seconds since the epoch, or -1
    QelOptionalProperty<bool> disabled;

    static const QelWireLayout& wire;
};

} // namespace Qel
