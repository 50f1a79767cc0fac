#pragma once

#include <set>
#include <string>

#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A named set of operations.
struct QelTask {
    std::string name; ///< required by reads; writes accept an empty one
    std::string description;
    std::set<std::string> operations; ///< names

    using Reader = QelRecordReader<QelTask>;
    using Writer = QelRecordWriter<QelTask>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A task that also includes other roles.
struct QelRole : QelTask {
    std::set<std::string> roles; ///< names

    using Reader = QelRecordReader<QelRole>;
    using Writer = QelRecordWriter<QelRole>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Assigns a role on an object to a subject.
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
