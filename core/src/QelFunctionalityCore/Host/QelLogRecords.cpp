#include "QelFunctionalityCore/Host/QelLogRecords.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelLogClass> : WireWords<QelLogClass> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        field<&R::f1905>(1905, ignored, ifSet),
        field<&R::f1906>(1906, ignored, ifSet),
    };
};
const QelWireLayout& QelLogClass::wire = wireLayoutOf<QelLogClass>;

template <> struct Wire<QelLogInfo> : WireWords<QelLogInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        field<&R::f1089>(1089, required, always),
    };
};
const QelWireLayout& QelLogInfo::wire = wireLayoutOf<QelLogInfo>;

template <> struct Wire<QelLogParameters> : WireWords<QelLogParameters> {
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, required, always),
        field<&R::f1089>(1089, ignored, always),
        list<&R::logs>(1094, optional),
    };
};
const QelWireLayout& QelLogParameters::wire = wireLayoutOf<QelLogParameters>;

} // namespace Qel
