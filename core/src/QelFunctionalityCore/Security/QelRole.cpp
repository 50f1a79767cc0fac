#include "QelFunctionalityCore/Security/QelRole.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelTask> : WireWords<QelTask> {
    static constexpr QelWireField fields[] = {
        list<&QelTask::operations>(1999, ignored),
        field<&QelTask::description>(1496, ignored, ifSet, base64),
        field<&QelTask::name>(1026, required, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelTask>() {
    return wireLayoutOf<QelTask>;
}

template <> struct Wire<QelRole> : WireWords<QelRole> {
    static constexpr QelWireField fields[] = {
        list<&QelRole::roles>(1859, ignored),
        base<QelTask>(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelRole>() {
    return wireLayoutOf<QelRole>;
}

template <> struct Wire<QelRoleAssignment> : WireWords<QelRoleAssignment> {
    static constexpr QelWireField fields[] = {
        field<&QelRoleAssignment::role>(1859, required, always),
        field<&QelRoleAssignment::subject>(2071, required, always),
        field<&QelRoleAssignment::object>(1935, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelRoleAssignment>() {
    return wireLayoutOf<QelRoleAssignment>;
}

} // namespace Qel
