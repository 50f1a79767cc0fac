#include "QelFunctionalityCore/Security/QelAce.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelObjectRights> : WireWords<QelObjectRights> {
    static constexpr QelWireField fields[] = {
        field<&R::object>(1935, required, always),
        list<&R::rights>(2082, ignored).bestEffort(),
        list<&R::operations>(1999, ignored).bestEffort(),
    };
};
const QelWireLayout& QelObjectRights::wire = wireLayoutOf<QelObjectRights>;

} // namespace Qel
