#include "QelFunctionalityCore/Host/QelUser.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelUser> : WireWords<QelUser> {
    static constexpr QelWireField fields[] = {
        base<QelUserNameID>(),
        field<&QelUser::groupId>(1028, ignored, always),
        list<&QelUser::groups>(1029, optional),
        field<&QelUser::comment>(1031, optional, ifSet),
        field<&QelUser::password>(1032, optional, ifSet, base64),
        field<&QelUser::shell>(1033, optional, ifSet),
        field<&QelUser::home>(1034, optional, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelUser>() {
    return wireLayoutOf<QelUser>;
}

template <> struct Wire<QelGroup> : WireWords<QelGroup> {
    static constexpr int nameElement = 1026;
    static constexpr QelWireField fields[] = {
        field<&QelGroup::group>(0, required, always),
        list<&QelGroup::members>(1025, optional).holding(nameElement),
        list<&QelGroup::memberGroups>(1737, optional).holding(nameElement),
    };
};
template <> const QelWireLayout& qelWireLayout<QelGroup>() {
    return wireLayoutOf<QelGroup>;
}

} // namespace Qel
