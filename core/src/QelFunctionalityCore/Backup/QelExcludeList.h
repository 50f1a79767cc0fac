#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Backup/QelBackupTrace.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Paths that a backup leaves out, with two options that the backup service gives their meaning.
struct QelExcludeList : std::vector<std::string> {
    using traced_in_log = void;

    bool option1982 = false;
    bool option1044 = false;

    using std::vector<std::string>::vector;

    /// Adds to the paths that are there.
    using Reader = QelRecordReader<QelExcludeList>;
    using Writer = QelRecordWriter<QelExcludeList>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
