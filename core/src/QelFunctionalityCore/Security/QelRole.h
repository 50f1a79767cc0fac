#pragma once

#include <set>
#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A named set of operations.
struct QEL_EXPORT QelTask : QelRecord<QelTask> {
    std::string name; ///< required by reads; writes accept an empty one
    std::string description;
    std::set<std::string> operations; ///< names

    static const QelWireLayout& wire;
};

/// A task that also includes other roles.
struct QEL_EXPORT QelRole : QelRecord<QelRole, QelTask> {
    std::set<std::string> roles; ///< names

    static const QelWireLayout& wire;
};

/// Assigns a role on an object to a subject.
struct QEL_EXPORT QelRoleAssignment : QelRecord<QelRoleAssignment> {
    std::string role; ///< name of a QelRole
    QelSID subject;
    QelGUID object;

    static const QelWireLayout& wire;
};

} // namespace Qel
