#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Values/QelIPAddress.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A network interface of a host, with its addresses.
struct QelNetInterface {
    std::string name;
    std::vector<QelIPAddress> addresses;
    std::vector<std::string> f1072;
    int flags = 0; ///< the kernel's interface flags, IFF_* of <net/if.h>

    /// Whether the interface resolves addresses by ARP.
    [[nodiscard]] bool isArpable() const;
    [[nodiscard]] bool isLoopback() const;

    using Reader = QelRecordReader<QelNetInterface>;
    using Writer = QelRecordWriter<QelNetInterface>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The network settings of a host.
struct QelNetwork {
    std::string hostname;
    std::string f1282;
    std::vector<std::string> nameservers;
    std::vector<QelNetInterface> interfaces;

    using Reader = QelRecordReader<QelNetwork>;
    using Writer = QelRecordWriter<QelNetwork>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
