#include "QelFunctionalityCore/Host/QelPackageManagerOptions.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelPackageManagerOptions> : WireWords<QelPackageManagerOptions> {
    static constexpr QelWireField fields[] = {
        bits<&R::options, QelWireBit{1, 1844}, QelWireBit{2, 1456}, QelWireBit{4, 1736}, QelWireBit{8, 1152},
             QelWireBit{16, 1853}, QelWireBit{32, 1917}>(),
    };
};
const QelWireLayout& QelPackageManagerOptions::wire = wireLayoutOf<QelPackageManagerOptions>;

template <> struct Wire<QelPackageManagerListOptions> : WireWords<QelPackageManagerListOptions> {
    static constexpr QelWireField fields[] = {
        base<QelPackageManagerOptions>(),
        list<&R::types>(1007, optional),
        wrappedBits<&R::listFlags, QelWireBit{1, 1627}>(1197, ifSet).kept(),
    };
};
const QelWireLayout& QelPackageManagerListOptions::wire = wireLayoutOf<QelPackageManagerListOptions>;

} // namespace Qel
