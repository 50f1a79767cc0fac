#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Host/QelNameID.h"

namespace Qel {

/// A user of a host.
struct QelUser : QelUserNameID {
    QelGroupNameID groupId; ///< primary group; if empty, written as an empty element, which reads as a missing one
    std::vector<QelGroupNameID> groups;
    std::string comment;
    std::string password; ///< any bytes; must never be logged
    std::string shell;
    std::string home;

    using Reader = QelRecordReader<QelUser>;
    using Writer = QelRecordWriter<QelUser>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A group of users.
struct QelGroup {
    QelGroupNameID group;
    std::set<std::string> members;      ///< users
    std::set<std::string> memberGroups; ///< groups whose members belong to this group

    using Reader = QelRecordReader<QelGroup>;
    using Writer = QelRecordWriter<QelGroup>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
