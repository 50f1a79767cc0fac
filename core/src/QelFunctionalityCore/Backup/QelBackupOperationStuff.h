#pragma once

#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Settings of one operation of the backup service.  What isn't specified is left to the service.
struct QelBackupOperationStuff {
    using traced_in_log = void;

    QelOptionalProperty<QelConnectionInfo> connection; ///< the agent that does the work
    QelOptionalProperty<int> maxChainLength;           ///< incremental backups behind a full one; below 1 for no limit
    QelOptionalProperty<int> maxChainAge;              ///< days since the full backup; 0 for no limit
    QelOptionalProperty<int> option2089;
    QelOptionalProperty<int> option1983;
    QelOptionalProperty<int> option1007;

    /// Whether a chain of this length is as long as one may be.
    [[nodiscard]] bool longChain(int length) const;
    /// Whether a chain that began at this time, in seconds since the epoch, is older than one may be.
    [[nodiscard]] bool oldChain(long time) const;
    /// Takes what isn't specified here from `other`.
    void complement(const QelBackupOperationStuff& other);

    /// Always 0.
    using Reader = QelRecordReader<QelBackupOperationStuff>;
    using Writer = QelRecordWriter<QelBackupOperationStuff>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The backup service's own settings, all of them specified.
struct QelBackupMConfig : QelBackupOperationStuff {
    /// The local agent, chains without limits, and no options but 1983.
    QelBackupMConfig();
    /// The settings given, and the default ones for the rest.
    explicit QelBackupMConfig(const QelBackupOperationStuff& settings);

    /// -1 unless all settings are there; then those that are have been read.  The connection is read into the one that
    /// is there, so that one without a protocol keeps the local agent's.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelBackupMConfig& config) const;
    };
    using Writer = QelRecordWriter<QelBackupMConfig>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
