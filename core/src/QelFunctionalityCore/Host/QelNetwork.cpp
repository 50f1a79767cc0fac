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
        field<&QelNetInterface::name>(1026, required, always),
        list<&QelNetInterface::addresses>(1071, optional),
        list<&QelNetInterface::f1072>(1072, optional),
        field<&QelNetInterface::flags>(1712, ignored, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelNetInterface>() {
    return wireLayoutOf<QelNetInterface>;
}

template <> struct Wire<QelNetwork> : WireWords<QelNetwork> {
    static constexpr QelWireField fields[] = {
        field<&QelNetwork::hostname>(1261, required, always),
        field<&QelNetwork::f1282>(1282, required, always),
        list<&QelNetwork::nameservers>(1281, optional),
        list<&QelNetwork::interfaces>(1250, optional),
    };
};
template <> const QelWireLayout& qelWireLayout<QelNetwork>() {
    return wireLayoutOf<QelNetwork>;
}

} // namespace Qel
