#include "QelFunctionalityCore/Host/QelNetwork.h"

#include <net/if.h>

#include "QelMessage/QelWireTable.h"

namespace Qel {

bool QelNetInterface::isArpable() const {
    return (flags & IFF_NOARP) == 0;
}

bool QelNetInterface::isLoopback() const {
    return (flags & IFF_LOOPBACK) != 0;
}

template <> struct Wire<QelNetInterface> : WireWords<QelNetInterface> {
    static constexpr int nsId = 292, typeId = 136;
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        list<&R::addresses>(1071, optional),
        list<&R::f1072>(1072, optional),
        field<&R::flags>(1712, ignored, always),
    };
};
const QelWireLayout& QelNetInterface::wire = wireLayoutOf<QelNetInterface>;

template <> struct Wire<QelNetwork> : WireWords<QelNetwork> {
    static constexpr QelWireField fields[] = {
        field<&R::hostname>(1261, required, always),
        field<&R::f1282>(1282, required, always),
        list<&R::nameservers>(1281, optional),
        list<&R::interfaces>(1250, optional),
    };
};
const QelWireLayout& QelNetwork::wire = wireLayoutOf<QelNetwork>;

} // namespace Qel
