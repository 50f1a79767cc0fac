#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// A packet filter rule of an environment or a host.  It takes any texts: what the fields without a name mean is the
/// business of the service that fills it in.
struct QelFirewallRule {
    /// What the service stores for protocol, chain and policy.
    static constexpr std::string_view PT_TCP = "tcp";
    static constexpr std::string_view PT_UDP = "udp";
    static constexpr std::string_view CT_INPUT = "INPUT";
    static constexpr std::string_view CT_OUTPUT = "OUTPUT";
    static constexpr std::string_view CT_FORWARD = "FORWARD";
    static constexpr std::string_view PL_ACCEPT = "ACCEPT";
    static constexpr std::string_view PL_DROP = "DROP";
    static constexpr std::string_view PL_REJECT = "REJECT";

    /// Addresses of one side.
    struct NetAddress {
        std::string address; ///< empty for any
        std::string mask;

        /// "address", or "address", the separator and "mask"; empty without an address.
        [[nodiscard]] std::string toString(char separator) const;

        friend bool operator==(const NetAddress&, const NetAddress&) = default;

        using Reader = QelRecordReader<NetAddress>;
        using Writer = QelRecordWriter<NetAddress>;
        using reader_type = Reader;
        using writer_type = Writer;
    };

    static constexpr int noPort = -1;
    struct ValidPort {
        constexpr bool operator()(int port) const { return port != noPort; }
    };

    /// Ports of one side.  Without a `first` there are none, and a `second` is lost on the wire.
    struct PortRange {
        int first = noPort;
        int second = noPort; ///< the last one; `noPort` if the first is the only one

        /// "first", or "first", the separator and "second"; empty without ports.
        [[nodiscard]] std::string toString(char separator) const;

        friend bool operator==(const PortRange&, const PortRange&) = default;

        using Reader = QelRecordReader<PortRange>;
        using Writer = QelRecordWriter<PortRange>;
        using reader_type = Reader;
        using writer_type = Writer;
    };

    std::string name;
    std::string text1195; ///< required: a rule with an empty one can be written but not read back
    std::string text1196;
    std::string text1197;
    bool flag1198 = false;
    NetAddress source;
    NetAddress destination;
    PortRange sourcePorts;
    PortRange destinationPorts;
    std::string text1203;
    std::string text1204;

    friend bool operator==(const QelFirewallRule&, const QelFirewallRule&) = default;

    /// -1 without `name` or `text1195`, and if an address or a port range is there but can't be read.
    using Reader = QelRecordReader<QelFirewallRule>;
    /// Always 0.
    using Writer = QelRecordWriter<QelFirewallRule>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
