#include "QelFunctionalityCore/Security/QelAce.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelObjectRights> : WireWords<QelObjectRights> {
    static constexpr QelWireField fields[] = {
        field<&QelObjectRights::object>(1935, required, always),
        list<&QelObjectRights::rights>(2082, ignored).unchecked(),
        list<&QelObjectRights::operations>(1999, ignored).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelObjectRights>() {
    return wireLayoutOf<QelObjectRights>;
}

} // namespace Qel
