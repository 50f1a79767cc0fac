#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelFunctionalityCore/Backup/QelExcludeList.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelMessage/QelDerivedParsers.h"

namespace Qel {

/// The content of a backup.  It has no fields: each kind of backup derives its own class.
struct QEL_EXPORT QelBackupData : QelRecord<QelBackupData> {
    using traced_in_log = void;

    virtual ~QelBackupData() = default;

    static const QelWireLayout& wire;
};

/// A backup of an environment.  Reading always returns 0.
struct QEL_EXPORT QelEnvBackupData : QelRecord<QelEnvBackupData, QelBackupData> {
    boost::shared_ptr<QelEnv> env; ///< at the time of the backup; null is not sent
    std::vector<std::string> paths;
    QelExcludeList excludes;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelBackupData>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelBackupData, QelBackupData> factoryQelBackupData;
QEL_EXPORT extern QelDerivedParserFactoryT<QelEnvBackupData, QelBackupData> factoryQelEnvBackupData;

} // namespace Qel
