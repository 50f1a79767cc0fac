#pragma once

#include "QelMessage/QelRecord.h"

namespace Qel {

// A field without a name of its own bears the number of its element: what it means lies with the agent that fills it.

/// How much of something is used: bytes, blocks, inodes.
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
    long long f1056 = 0; ///< one that can't be read is no failure
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

/// Where a processor's time went.
struct QelCPULoad {
    long long f1044 = 0;
    long long f1025 = 0;
    long long f1045 = 0;
    long long f1046 = 0;

    /// -1 when the cursor answers just that for one of the fields; any other answer lets the reading go on.
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
    double f1065 = 0; ///< the only one that must be there

    using Reader = QelRecordReader<QelLoadAvg1>;
    using Writer = QelRecordWriter<QelLoadAvg1>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The load averages over three spans of time, the shortest first.
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
