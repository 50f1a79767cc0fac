#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Backup/QelDSObjectInfo.h"
#include "QelMessage/QelDerivedParsers.h"

namespace Qel {

/// A backup, as recorded by the storage that holds it.
struct QEL_EXPORT QelBackup : QelRecord<QelBackup, QelDSObjectInfo> {
    using traced_in_log = void;

    QelEID eid; ///< environment that was backed up; QelDSObjectInfo::eid is that of the storage
    std::string description;
    int count = 0;
    int flags = 0;          ///< only the bit with value 1 is sent
    bool localFlag = false; ///< never sent

    void swap(QelBackup& other) noexcept;

    static const QelWireLayout& wire;
};

/// Event: a backup was created.
struct QEL_EXPORT QelNewBackupData : QelRecord<QelNewBackupData, QelBackup> {
    static constexpr std::string_view subscriptionName = "new_backup_subscription";

    static const QelWireLayout& wire;
};

/// Event: backups were removed.
struct QEL_EXPORT QelDestroyedBackupsData : QelRecord<QelDestroyedBackupsData> {
    using traced_in_log = void;

    static constexpr std::string_view subscriptionName = "destroyed_backups_subscription";

    virtual ~QelDestroyedBackupsData() = default;

    std::vector<std::string> ids; ///< an empty list can be written but not read back

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelNewBackupData>;
extern template class QelDerivedParserFactory<QelDestroyedBackupsData>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelNewBackupData, QelNewBackupData> factoryQelNewBackupData;
QEL_EXPORT extern QelDerivedParserFactoryT<QelDestroyedBackupsData, QelDestroyedBackupsData>
    factoryQelDestroyedBackupsData;

} // namespace Qel
