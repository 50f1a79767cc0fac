#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Backup/QelBackupOperationStuff.h"
#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Backup/QelDSLocation.h"
#include "QelFunctionalityCore/Backup/QelExcludeList.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelDerivedParsers.h"

// What the requests to the backup service ask for.  Options that are named after their elements have their meaning from
// the service; here they are kept and passed on.  A flag is what its element says: a message that lacks it makes it
// false, whatever its default.

namespace Qel {

/// How to make a backup.
struct QelBackupOptions {
    using traced_in_log = void;

    virtual ~QelBackupOptions() = default;

    QelBackupOperationStuff operation;
    int kind = 0; ///< bits 1 and 2; a read adds the bits of the message to those that are set
    std::string description;
    bool option1014 = false; ///< comes back true if `text1006` isn't empty
    std::string text1006;
    std::vector<std::string> paths;
    QelExcludeList excludes;
    QelOptionalProperty<QelDSLocation> storage;

    /// Always 0.
    using Reader = QelRecordReader<QelBackupOptions>;
    using Writer = QelRecordWriter<QelBackupOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// How to restore a backup.
struct QelRestoreOptions {
    using traced_in_log = void;

    virtual ~QelRestoreOptions() = default;

    bool option1152 = false;
    QelOptionalProperty<QelDSLocation> storage;

    using Reader = QelRecordReader<QelRestoreOptions>;
    using Writer = QelRecordWriter<QelRestoreOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// How to restore some of the files in a backup.
struct QelSelectiveRestoreOptions {
    using traced_in_log = void;

    virtual ~QelSelectiveRestoreOptions() = default;

    bool option1832 = false;

    using Reader = QelRecordReader<QelSelectiveRestoreOptions>;
    using Writer = QelRecordWriter<QelSelectiveRestoreOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// What to tell of a backup.  It has no fields: each kind of backup derives its own.
struct QelBackupGetInfoOptions {
    using traced_in_log = void;

    virtual ~QelBackupGetInfoOptions() = default;

    using Reader = QelRecordReader<QelBackupGetInfoOptions>;
    using Writer = QelRecordWriter<QelBackupGetInfoOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// What to tell of an environment's backup.
struct QelBackupGetEnvInfoOptions : QelBackupGetInfoOptions {
    bool option1624 = true;
    bool option2064 = true;

    using Reader = QelRecordReader<QelBackupGetEnvInfoOptions>;
    using Writer = QelRecordWriter<QelBackupGetEnvInfoOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Which backups to remove.
struct QelRemoveBackupOptions {
    using traced_in_log = void;

    QelEID eid; ///< not sent unless valid
    bool option1015 = false;
    QelOptionalProperty<QelDSLocation> storage;

    using Reader = QelRecordReader<QelRemoveBackupOptions>;
    using Writer = QelRecordWriter<QelRemoveBackupOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Which backups to list.
struct QelListBackupOptions {
    using traced_in_log = void;

    QelEID eid; ///< of an environment; not sent unless valid
    bool option1626 = false;
    bool option1134 = true;
    QelOptionalProperty<QelDSLocation> storage;
    QelEID eid2028; ///< of a storage's environment; not sent unless valid

    using Reader = QelRecordReader<QelListBackupOptions>;
    using Writer = QelRecordWriter<QelListBackupOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Which backups to look for.
struct QelSearchBackupOptions {
    using traced_in_log = void;

    QelOptionalProperty<std::string> hostName;
    QelOptionalProperty<std::string> ip;
    long timeFrom = 0; ///< seconds since the epoch; 0 and below for no bound
    long timeTo = 0;   ///< the same
    QelOptionalProperty<QelDSLocation> storage;

    /// A bound that the message lacks is none.  Always 0.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelSearchBackupOptions& options) const;
    };
    using Writer = QelRecordWriter<QelSearchBackupOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelBackupOptions>;
extern template class QelDerivedParserFactory<QelRestoreOptions>;
extern template class QelDerivedParserFactory<QelSelectiveRestoreOptions>;
extern template class QelDerivedParserFactory<QelBackupGetInfoOptions>;

extern QelDerivedParserFactoryT<QelBackupOptions, QelBackupOptions> factoryQelBackupOptions;
extern QelDerivedParserFactoryT<QelRestoreOptions, QelRestoreOptions> factoryQelRestoreOptions;
extern QelDerivedParserFactoryT<QelSelectiveRestoreOptions, QelSelectiveRestoreOptions>
    factoryQelSelectiveRestoreOptions;
extern QelDerivedParserFactoryT<QelBackupGetInfoOptions, QelBackupGetInfoOptions> factoryQelBackupGetInfoOptions;
extern QelDerivedParserFactoryT<QelBackupGetEnvInfoOptions, QelBackupGetInfoOptions> factoryQelBackupGetEnvInfoOptions;

} // namespace Qel
