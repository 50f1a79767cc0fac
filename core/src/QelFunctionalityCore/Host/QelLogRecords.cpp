#include "QelFunctionalityCore/Host/QelLogRecords.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelLogClass> : WireWords<QelLogClass> {
    static constexpr QelWireField fields[] = {
        field<&QelLogClass::name>(1026, required, always),
        field<&QelLogClass::f1905>(1905, ignored, ifSet),
        field<&QelLogClass::f1906>(1906, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelLogClass>() {
    return wireLayoutOf<QelLogClass>;
}

template <> struct Wire<QelLogInfo> : WireWords<QelLogInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelLogInfo::name>(1026, required, always),
        field<&QelLogInfo::f1089>(1089, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelLogInfo>() {
    return wireLayoutOf<QelLogInfo>;
}

template <> struct Wire<QelLogParameters> : WireWords<QelLogParameters> {
    static constexpr QelWireField fields[] = {
        field<&QelLogParameters::eid>(1866, required, always),
        field<&QelLogParameters::f1089>(1089, ignored, always),
        list<&QelLogParameters::logs>(1094, optional),
    };
};
template <> const QelWireLayout& qelWireLayout<QelLogParameters>() {
    return wireLayoutOf<QelLogParameters>;
}

} // namespace Qel
