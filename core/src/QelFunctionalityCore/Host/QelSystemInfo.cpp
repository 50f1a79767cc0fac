#include "QelFunctionalityCore/Host/QelSystemInfo.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelSystemInfo> : WireWords<QelSystemInfo> {
    static constexpr QelWireField processors[] = {
        field<&R::f1049>(1049, required, always), field<&R::f1052>(1052, required, always),
        field<&R::f1047>(1047, required, always), field<&R::f1050>(1050, required, always),
        field<&R::f1048>(1048, required, always), field<&R::f2122>(2122, required, always),
        field<&R::f2123>(2123, required, always), field<&R::name>(1026, required, always),
        field<&R::f1051>(1051, required, always),
    };
    static constexpr QelWireField fields[] = {
        field<&R::arch>(1276, required, always),
        field<&R::os>(1277, required, always),
        grouped<processors, 292>("processors", 1229, required),
        field<&R::memory>(1078, required, always),
        field<&R::swap>(1079, required, always),
    };
};
const QelWireLayout& QelSystemInfo::wire = wireLayoutOf<QelSystemInfo>;

} // namespace Qel
