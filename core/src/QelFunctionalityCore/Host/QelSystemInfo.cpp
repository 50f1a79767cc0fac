#include "QelFunctionalityCore/Host/QelSystemInfo.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelSystemInfo> : WireWords<QelSystemInfo> {
    static constexpr QelWireField processors[] = {
        field<&QelSystemInfo::f1049>(1049, required, always), field<&QelSystemInfo::f1052>(1052, required, always),
        field<&QelSystemInfo::f1047>(1047, required, always), field<&QelSystemInfo::f1050>(1050, required, always),
        field<&QelSystemInfo::f1048>(1048, required, always), field<&QelSystemInfo::f2122>(2122, required, always),
        field<&QelSystemInfo::f2123>(2123, required, always), field<&QelSystemInfo::name>(1026, required, always),
        field<&QelSystemInfo::f1051>(1051, required, always),
    };
    static constexpr QelWireField fields[] = {
        field<&QelSystemInfo::arch>(1276, required, always),    field<&QelSystemInfo::os>(1277, required, always),
        grouped<processors, 292>("processors", 1229, required), field<&QelSystemInfo::memory>(1078, required, always),
        field<&QelSystemInfo::swap>(1079, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSystemInfo>() {
    return wireLayoutOf<QelSystemInfo>;
}

} // namespace Qel
