#pragma once

#include <set>
#include <string>

#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Operations that are allowed together.
struct QelTask {
    std::string name; ///< without one a task is written but can't be read back
    std::string description;
    std::set<std::string> operations; ///< names

    using Reader = QelRecordReader<QelTask>;
    using Writer = QelRecordWriter<QelTask>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Operations, and other roles, that are held together.
struct QelRole : QelTask {
    std::set<std::string> roles; ///< names

    using Reader = QelRecordReader<QelRole>;
    using Writer = QelRecordWriter<QelRole>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Who holds a role, and on what.
struct QelRoleAssignment {
    std::string role; ///< name of a QelRole
    QelSID subject;
    QelGUID object;

    using Reader = QelRecordReader<QelRoleAssignment>;
    using Writer = QelRecordWriter<QelRoleAssignment>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
