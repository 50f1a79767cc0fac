#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelIPAddress.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A network interface of a host, with its addresses.
struct QEL_EXPORT QelNetInterface : QelRecord<QelNetInterface> {
    std::string name;
    std::vector<QelIPAddress> addresses;
    std::vector<std::string> f1072;
    int flags = 0; ///< the kernel's interface flags, IFF_* of <net/if.h>

    /// Whether the interface resolves addresses by ARP.
    [[nodiscard]] bool isArpable() const;
    [[nodiscard]] bool isLoopback() const;

    static const QelWireLayout& wire;
};

/// The network settings of a host.
struct QEL_EXPORT QelNetwork : QelRecord<QelNetwork> {
    std::string hostname;
    std::string f1282;
    std::vector<std::string> nameservers;
    std::vector<QelNetInterface> interfaces;

    static const QelWireLayout& wire;
};

} // namespace Qel
