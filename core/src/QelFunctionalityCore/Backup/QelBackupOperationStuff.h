#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Settings of one backup operation.  The service chooses the values of unspecified settings.  Reading always returns
/// 0.
struct QEL_EXPORT QelBackupOperationStuff : QelRecord<QelBackupOperationStuff> {
    using traced_in_log = void;

    QelOptionalProperty<QelConnectionInfo> connection; ///< agent that performs the operation
    QelOptionalProperty<int> maxChainLength;           ///< incremental backups after a full one; < 1: no limit
    QelOptionalProperty<int> maxChainAge;              ///< days since the full backup; 0: no limit
    QelOptionalProperty<int> option2089;
    QelOptionalProperty<int> option1983;
    QelOptionalProperty<int> option1007;

    /// Returns whether a chain of this length has reached maxChainLength.
    [[nodiscard]] bool longChain(int length) const;
    /// Returns whether a chain that began at `time`, in seconds since the epoch, is older than maxChainAge.
    [[nodiscard]] bool oldChain(long time) const;
    /// Copies each setting that is unspecified here from `other`.
    void complement(const QelBackupOperationStuff& other);

    static const QelWireLayout& wire;
};

/// The backup service's own settings.  All of them are specified.
struct QEL_EXPORT QelBackupMConfig : QelRecord<QelBackupMConfig, QelBackupOperationStuff> {
    /// Defaults: the local agent, chains without limits, option1983 set to 1, the other options 0.
    QelBackupMConfig();
    /// Copies `settings` and fills in the defaults for unspecified ones.
    explicit QelBackupMConfig(const QelBackupOperationStuff& settings);

    /// Returns -1 unless all settings are present; those that are present are read in any case.  The connection is read
    /// into the existing one, so a connection without a protocol keeps that of the local agent.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelBackupMConfig& config) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

} // namespace Qel
