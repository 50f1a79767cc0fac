#pragma once

#include <string>

#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

/// A scheduled task.  The service that owns tasks defines name, category and time; this library only stores and
/// forwards them.
struct QelScheduleTask {
    QelGUID id;
    std::string taskName;
    std::string description;
    std::string category;
    QelSchedulerTriggerList triggers; ///< an empty list can be written but not read
    long taskTime = qelNoTime;        ///< seconds since the epoch, or -1
    QelOptionalProperty<bool> disabled;

    using Reader = QelRecordReader<QelScheduleTask>;
    using Writer = QelRecordWriter<QelScheduleTask>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
