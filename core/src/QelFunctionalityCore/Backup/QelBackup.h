#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Backup/QelDSObjectInfo.h"
#include "QelMessage/QelDerivedParsers.h"

namespace Qel {

/// A backup, as recorded by the storage that holds it.
struct QelBackup : QelDSObjectInfo {
    using traced_in_log = void;

    QelEID eid; ///< environment that was backed up; QelDSObjectInfo::eid is that of the storage
    std::string description;
    int count = 0;
    int flags = 0;          ///< only the bit with value 1 is sent
    bool localFlag = false; ///< never sent

    void swap(QelBackup& other) noexcept;

    using Reader = QelRecordReader<QelBackup>;
    using Writer = QelRecordWriter<QelBackup>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Event: a backup was created.
struct QelNewBackupData : QelBackup {
    static constexpr std::string_view subscriptionName = "new_backup_subscription";

    using Reader = QelRecordReader<QelNewBackupData>;
    using Writer = QelRecordWriter<QelNewBackupData>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Event: backups were removed.
struct QelDestroyedBackupsData {
    using traced_in_log = void;

    static constexpr std::string_view subscriptionName = "destroyed_backups_subscription";

    virtual ~QelDestroyedBackupsData() = default;

    std::vector<std::string> ids; ///< an empty list can be written but not read back

    using Reader = QelRecordReader<QelDestroyedBackupsData>;
    using Writer = QelRecordWriter<QelDestroyedBackupsData>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelNewBackupData>;
extern template class QelDerivedParserFactory<QelDestroyedBackupsData>;

extern QelDerivedParserFactoryT<QelNewBackupData, QelNewBackupData> factoryQelNewBackupData;
extern QelDerivedParserFactoryT<QelDestroyedBackupsData, QelDestroyedBackupsData> factoryQelDestroyedBackupsData;

} // namespace Qel
