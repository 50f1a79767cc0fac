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
        fieldIf<&R::count, isLimited>(1259, ignored),
        field<&R::type>(1007, ignored, ifSet),
        list<&R::states>(1192, optional),
    };
};
const QelWireLayout& QelEnvMListOptions::wire = wireLayoutOf<QelEnvMListOptions>;

} // namespace Qel
