#include "QelFunctionalityCore/Host/QelUser.h"

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// Treats an empty element as missing: the writer produces one for a user without a primary group.
int readPrimaryGroup(const QelMessageIterator& cursor, QelUser& user) {
    if (cursor.seek("primary_group"_element) != 0)
        return 0;
    int result = 0;
    if (cursor.firstChild() == 0) {
        cursor.seekUp();
        result = cursor.getObj(user.groupId, getEmptyID());
    }
    cursor.seekUp();
    return result;
}

int writePrimaryGroup(QelMessageIterator& cursor, const QelUser& user) {
    return cursor.putObj(user.groupId, "primary_group"_element);
}

} // namespace

template <> struct Wire<QelUser> : WireWords<QelUser> {
    static constexpr QelWireField fields[] = {
        base<QelUserNameID>(),
        step<&readPrimaryGroup, &writePrimaryGroup, QelGroupNameID>("groupId", "primary_group"_element, optional),
        list<&R::groups>(1029, optional),
        field<&R::comment>(1031, ignored, ifSet),
        field<&R::password>(1032, ignored, ifSet, base64),
        field<&R::shell>(1033, ignored, ifSet),
        field<&R::home>(1034, ignored, ifSet),
    };
};
const QelWireLayout& QelUser::wire = wireLayoutOf<QelUser>;

template <> struct Wire<QelGroup> : WireWords<QelGroup> {
    static constexpr QelWireField fields[] = {
        field<&R::group>(0, required, always),
        list<&R::members>(1025, optional).withValue("name"_element),
        list<&R::memberGroups>(1737, optional).withValue("name"_element),
    };
};
const QelWireLayout& QelGroup::wire = wireLayoutOf<QelGroup>;

} // namespace Qel
