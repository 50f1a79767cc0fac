#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr bool isLimited(int count) {
    return count != QelEnvMListOptions::anyCount;
}

} // namespace

template <> struct Wire<QelEnvMListOptions> : WireWords<QelEnvMListOptions> {
    static constexpr QelWireField fields[] = {
        fieldIf<&QelEnvMListOptions::count, isLimited>(1259, ignored),
        field<&QelEnvMListOptions::type>(1007, ignored, ifSet),
        list<&QelEnvMListOptions::states>(1192, optional),
    };
};
template <> const QelWireLayout& qelWireLayout<QelEnvMListOptions>() {
    return wireLayoutOf<QelEnvMListOptions>;
}

} // namespace Qel
