#include "QelFunctionalityCore/Files/QelUGIDLimits.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelUGIDLimits> : WireWords<QelUGIDLimits> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::limit1>(1539, required, always),
        field<&R::limit2>(1540, required, always),
        field<&R::limit3>(1541, required, always),
        field<&R::limit4>(1542, required, always),
    };
};
const QelWireLayout& QelUGIDLimits::wire = wireLayoutOf<QelUGIDLimits>;

} // namespace Qel
