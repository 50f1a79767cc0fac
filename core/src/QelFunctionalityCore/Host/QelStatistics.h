#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

// Fields named after their element ID are opaque here; the agent that fills them defines their meaning.

/// Usage of a resource, in bytes, blocks or inodes.
struct QEL_EXPORT QelUsageStats : QelRecord<QelUsageStats> {
    long long total = 0;
    long long used = 0;
    long long free = 0;

    static const QelWireLayout& wire;
};

/// A counter over time.
struct QEL_EXPORT QelStats : QelRecord<QelStats> {
    long long f1060 = 0;
    long long f1061 = 0;
    long long f1062 = 0;
    long long f1065 = 0;
    long long f1040 = 0;

    static const QelWireLayout& wire;
};

/// Traffic in one direction.
struct QEL_EXPORT QelNetTransferStat : QelRecord<QelNetTransferStat> {
    long long f1056 = 0; ///< optional; a failed read is ignored
    long long f1055 = 0;

    static const QelWireLayout& wire;
};

/// Traffic in both directions.
struct QEL_EXPORT QelNetTransfer : QelRecord<QelNetTransfer> {
    QelNetTransferStat in;
    QelNetTransferStat out;

    static const QelWireLayout& wire;
};

/// CPU time by use.
struct QEL_EXPORT QelCPULoad : QelRecord<QelCPULoad> {
    long long f1044 = 0;
    long long f1025 = 0;
    long long f1045 = 0;
    long long f1046 = 0;

    /// Stops with -1 if the cursor returns -1 for a field.  Any other nonzero result is ignored.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelCPULoad& load) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

/// A load average.
struct QEL_EXPORT QelLoadAvg1 : QelRecord<QelLoadAvg1> {
    double f1060 = 0;
    double f1061 = 0;
    double f1062 = 0;
    double f1065 = 0; ///< the only required field

    static const QelWireLayout& wire;
};

/// The load averages over three periods, shortest first.
struct QEL_EXPORT QelLoadAvg : QelRecord<QelLoadAvg> {
    QelLoadAvg1 f1041;
    QelLoadAvg1 f1042;
    QelLoadAvg1 f1043;

    static const QelWireLayout& wire;
};

} // namespace Qel
