#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelSecurityAttributes> : WireWords<QelSecurityAttributes> {
    static constexpr QelWireField fields[] = {
        field<&R::mode>(1135, required, always),
    };
};
const QelWireLayout& QelSecurityAttributes::wire = wireLayoutOf<QelSecurityAttributes>;

} // namespace Qel
