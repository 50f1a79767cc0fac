#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Backup/QelBackupOperationStuff.h"
#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Backup/QelDSLocation.h"
#include "QelFunctionalityCore/Backup/QelExcludeList.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelDerivedParsers.h"

// Options of requests to the backup service.  Options named after their element IDs are only stored and passed on; the
// service defines their meaning.  A flag is the presence of its element: reading a message without the element sets the
// flag to false, whatever its default.

namespace Qel {

/// How to make a backup.  Reading always returns 0.
struct QEL_EXPORT QelBackupOptions : QelRecord<QelBackupOptions> {
    using traced_in_log = void;

    virtual ~QelBackupOptions() = default;

    QelBackupOperationStuff operation;
    int kind = 0; ///< bits 1 and 2; reading adds the bits of the message to those already set
    std::string description;
    bool option1014 = false; ///< read back as true if `text1006` is not empty
    std::string text1006;
    std::vector<std::string> paths;
    QelExcludeList excludes;
    QelOptionalProperty<QelDSLocation> storage;

    static const QelWireLayout& wire;
};

/// How to restore a backup.
struct QEL_EXPORT QelRestoreOptions : QelRecord<QelRestoreOptions> {
    using traced_in_log = void;

    virtual ~QelRestoreOptions() = default;

    bool option1152 = false;
    QelOptionalProperty<QelDSLocation> storage;

    static const QelWireLayout& wire;
};

/// How to restore selected files of a backup.
struct QEL_EXPORT QelSelectiveRestoreOptions : QelRecord<QelSelectiveRestoreOptions> {
    using traced_in_log = void;

    virtual ~QelSelectiveRestoreOptions() = default;

    bool option1832 = false;

    static const QelWireLayout& wire;
};

/// Which information about a backup to return.  It has no fields: each kind of backup derives its own class.
struct QEL_EXPORT QelBackupGetInfoOptions : QelRecord<QelBackupGetInfoOptions> {
    using traced_in_log = void;

    virtual ~QelBackupGetInfoOptions() = default;

    static const QelWireLayout& wire;
};

/// Which information about the backup of an environment to return.
struct QEL_EXPORT QelBackupGetEnvInfoOptions : QelRecord<QelBackupGetEnvInfoOptions, QelBackupGetInfoOptions> {
    bool option1624 = true;
    bool option2064 = true;

    static const QelWireLayout& wire;
};

/// Which backups to remove.
struct QEL_EXPORT QelRemoveBackupOptions : QelRecord<QelRemoveBackupOptions> {
    using traced_in_log = void;

    QelEID eid; ///< sent only if valid
    bool option1015 = false;
    QelOptionalProperty<QelDSLocation> storage;

    static const QelWireLayout& wire;
};

/// Which backups to list.
struct QEL_EXPORT QelListBackupOptions : QelRecord<QelListBackupOptions> {
    using traced_in_log = void;

    QelEID eid; ///< of an environment; sent only if valid
    bool option1626 = false;
    bool option1134 = true;
    QelOptionalProperty<QelDSLocation> storage;
    QelEID eid2028; ///< of the environment that holds the storage; sent only if valid

    static const QelWireLayout& wire;
};

/// Which backups to search for.
struct QEL_EXPORT QelSearchBackupOptions : QelRecord<QelSearchBackupOptions> {
    using traced_in_log = void;

    QelOptionalProperty<std::string> hostName;
    QelOptionalProperty<std::string> ip;
    long timeFrom = 0; ///< seconds since the epoch; <= 0: no bound
    long timeTo = 0;   ///< seconds since the epoch; <= 0: no bound
    QelOptionalProperty<QelDSLocation> storage;

    /// Always returns 0.  A bound that is missing from the message is set to 0.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelSearchBackupOptions& options) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelBackupOptions>;
extern template class QelDerivedParserFactory<QelRestoreOptions>;
extern template class QelDerivedParserFactory<QelSelectiveRestoreOptions>;
extern template class QelDerivedParserFactory<QelBackupGetInfoOptions>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelBackupOptions, QelBackupOptions> factoryQelBackupOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelRestoreOptions, QelRestoreOptions> factoryQelRestoreOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelSelectiveRestoreOptions, QelSelectiveRestoreOptions>
    factoryQelSelectiveRestoreOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelBackupGetInfoOptions, QelBackupGetInfoOptions>
    factoryQelBackupGetInfoOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelBackupGetEnvInfoOptions, QelBackupGetInfoOptions>
    factoryQelBackupGetEnvInfoOptions;

} // namespace Qel
