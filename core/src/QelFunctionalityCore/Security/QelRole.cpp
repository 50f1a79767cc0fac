#include "QelFunctionalityCore/Security/QelRole.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelTask> : WireWords<QelTask> {
    static constexpr QelWireField fields[] = {
        list<&R::operations>(1999, ignored),
        field<&R::description>(1496, ignored, ifSet, base64),
        field<&R::name>(1026, required, ifSet),
    };
};
const QelWireLayout& QelTask::wire = wireLayoutOf<QelTask>;

template <> struct Wire<QelRole> : WireWords<QelRole> {
    static constexpr QelWireField fields[] = {
        list<&R::roles>(1859, ignored),
        base<QelTask>(),
    };
};
const QelWireLayout& QelRole::wire = wireLayoutOf<QelRole>;

template <> struct Wire<QelRoleAssignment> : WireWords<QelRoleAssignment> {
    static constexpr QelWireField fields[] = {
        field<&R::role>(1859, required, always),
        field<&R::subject>(2071, required, always),
        field<&R::object>(1935, required, always),
    };
};
const QelWireLayout& QelRoleAssignment::wire = wireLayoutOf<QelRoleAssignment>;

} // namespace Qel
