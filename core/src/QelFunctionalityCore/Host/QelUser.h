#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Host/QelNameID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A user of a host.
struct QEL_EXPORT QelUser : QelRecord<QelUser, QelUserNameID> {
    QelGroupNameID groupId; ///< primary group; if empty, written as an empty element, which reads as a missing one
    std::vector<QelGroupNameID> groups;
    std::string comment;
    std::string password; ///< any bytes; must never be logged
    std::string shell;
    std::string home;

    static const QelWireLayout& wire;
};

/// A group of users.
struct QEL_EXPORT QelGroup : QelRecord<QelGroup> {
    QelGroupNameID group;
    std::set<std::string> members;      ///< users
    std::set<std::string> memberGroups; ///< groups whose members belong to this group

    static const QelWireLayout& wire;
};

} // namespace Qel
