#pragma once

#include "QelMessage/QelRecord.h"

namespace Qel {

// Fields named after their element ID are opaque here; the agent that fills them defines their meaning.

/// Usage of a resource, in bytes, blocks or inodes.
struct QelUsageStats {
    long long total = 0;
    long long used = 0;
    long long free = 0;

    using Reader = QelRecordReader<QelUsageStats>;
    using Writer = QelRecordWriter<QelUsageStats>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A counter over time.
struct QelStats {
    long long f1060 = 0;
    long long f1061 = 0;
    long long f1062 = 0;
    long long f1065 = 0;
    long long f1040 = 0;

    using Reader = QelRecordReader<QelStats>;
    using Writer = QelRecordWriter<QelStats>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Traffic in one direction.
struct QelNetTransferStat {
    long long f1056 = 0; ///< optional; a failed read is ignored
    long long f1055 = 0;

    using Reader = QelRecordReader<QelNetTransferStat>;
    using Writer = QelRecordWriter<QelNetTransferStat>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Traffic in both directions.
struct QelNetTransfer {
    QelNetTransferStat in;
    QelNetTransferStat out;

    using Reader = QelRecordReader<QelNetTransfer>;
    using Writer = QelRecordWriter<QelNetTransfer>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// CPU time by use.
struct QelCPULoad {
    long long f1044 = 0;
    long long f1025 = 0;
    long long f1045 = 0;
    long long f1046 = 0;

    /// Stops with -1 if the cursor returns -1 for a field.  Any other nonzero result is ignored.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelCPULoad& load) const;
    };
    using Writer = QelRecordWriter<QelCPULoad>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A load average.
struct QelLoadAvg1 {
    double f1060 = 0;
    double f1061 = 0;
    double f1062 = 0;
    double f1065 = 0; ///< the only required field

    using Reader = QelRecordReader<QelLoadAvg1>;
    using Writer = QelRecordWriter<QelLoadAvg1>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The load averages over three periods, shortest first.
struct QelLoadAvg {
    QelLoadAvg1 f1041;
    QelLoadAvg1 f1042;
    QelLoadAvg1 f1043;

    using Reader = QelRecordReader<QelLoadAvg>;
    using Writer = QelRecordWriter<QelLoadAvg>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
