#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelSecurityAttributes> : WireWords<QelSecurityAttributes> {
    static constexpr QelWireField fields[] = {
        field<&QelSecurityAttributes::mode>(1135, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSecurityAttributes>() {
    return wireLayoutOf<QelSecurityAttributes>;
}

} // namespace Qel
