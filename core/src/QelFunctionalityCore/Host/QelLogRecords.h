#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A class of performance counters that can be logged.
struct QelLogClass {
    std::string name;
    std::string f1905;
    std::string f1906;

    using Reader = QelRecordReader<QelLogClass>;
    using Writer = QelRecordWriter<QelLogClass>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The settings of one part of a log.
struct QelLogInfo {
    std::string name;
    int f1089 = 0;

    using Reader = QelRecordReader<QelLogInfo>;
    using Writer = QelRecordWriter<QelLogInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The settings of an environment's log.
struct QelLogParameters {
    static constexpr std::string_view subscriptionName = "log_subscription";

    QelEID eid;
    int f1089 = 0;
    std::vector<QelLogInfo> logs;

    using Reader = QelRecordReader<QelLogParameters>;
    using Writer = QelRecordWriter<QelLogParameters>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
