#include "QelFunctionalityCore/Backup/QelBackup.h"
#include "QelFunctionalityCore/Backup/QelBackupData.h"
#include "QelFunctionalityCore/Backup/QelBackupOperationStuff.h"
#include "QelFunctionalityCore/Backup/QelBackupOptions.h"
#include "QelFunctionalityCore/Backup/QelDSLocation.h"
#include "QelFunctionalityCore/Backup/QelDSObjectInfo.h"
#include "QelFunctionalityCore/Backup/QelExcludeList.h"
#include "QelFunctionalityCore/Backup/QelMigrateOptions.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> backupRecordTypes() {
    return {
        tableRecordType<QelBackup>(),
        tableRecordType<QelBackupData>(),
        tableRecordType<QelBackupGetEnvInfoOptions>(),
        tableRecordType<QelBackupGetInfoOptions>(),
        tableRecordType<QelBackupMConfig>(),
        tableRecordType<QelBackupOperationStuff>(),
        tableRecordType<QelBackupOptions>(),
        tableRecordType<QelCalculateHWNodeNotes>(),
        tableRecordType<QelDSConfiguration>(),
        tableRecordType<QelDSLocation>(),
        tableRecordType<QelDSObjectInfo>(),
        tableRecordType<QelDestroyedBackupsData>(),
        tableRecordType<QelEnvBackupData>(),
        tableRecordType<QelExcludeList>(),
        tableRecordType<QelListBackupOptions>(),
        tableRecordType<QelMigratorCloneOptions>(),
        tableRecordType<QelNewBackupData>(),
        tableRecordType<QelP2VMigrateOptions>(),
        tableRecordType<QelRemoveBackupOptions>(),
        tableRecordType<QelRestoreOptions>(),
        tableRecordType<QelSearchBackupOptions>(),
        tableRecordType<QelSelectiveRestoreOptions>(),
        tableRecordType<QelV2PMigrateOptions>(),
        tableRecordType<QelV2VMigrateOptions>(),
    };
}

} // namespace Qel
