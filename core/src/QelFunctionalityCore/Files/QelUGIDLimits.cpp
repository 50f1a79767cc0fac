#include "QelFunctionalityCore/Files/QelUGIDLimits.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelUGIDLimits> : WireWords<QelUGIDLimits> {
    static constexpr QelWireField fields[] = {
        field<&QelUGIDLimits::limit1>(1539, required, always).unchecked(),
        field<&QelUGIDLimits::limit2>(1540, required, always).unchecked(),
        field<&QelUGIDLimits::limit3>(1541, required, always).unchecked(),
        field<&QelUGIDLimits::limit4>(1542, required, always).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelUGIDLimits>() {
    return wireLayoutOf<QelUGIDLimits>;
}

} // namespace Qel
