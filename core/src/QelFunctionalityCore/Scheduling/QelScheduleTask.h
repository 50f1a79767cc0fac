#pragma once

#include <string>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// A task and when it runs.  The service that owns tasks gives name, category and time their meaning; here they are
/// kept and passed on.
struct QelScheduleTask {
    QelGUID id;
    std::string taskName;
    std::string description;
    std::string category;
    QelSchedulerTriggerList triggers; ///< a task without any can be written but not read back
    long taskTime = qelNoTime;        ///< seconds since the epoch, or -1
    QelOptionalProperty<bool> disabled;

    using Reader = QelRecordReader<QelScheduleTask>;
    using Writer = QelRecordWriter<QelScheduleTask>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
