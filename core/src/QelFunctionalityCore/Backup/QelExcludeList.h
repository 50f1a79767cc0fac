#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Paths to exclude from a backup, and two options whose meaning the backup service defines.  Reading appends to the
/// existing paths.
struct QEL_EXPORT QelExcludeList : QelRecord<QelExcludeList>, std::vector<std::string> {
    using traced_in_log = void;

    bool option1982 = false;
    bool option1044 = false;

    using std::vector<std::string>::vector;

    static const QelWireLayout& wire;
};

} // namespace Qel
