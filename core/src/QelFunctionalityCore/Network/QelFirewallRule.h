#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A packet filter rule of an environment or a host.  Strings are not validated.  The service that fills in the rule
/// defines the fields without a name.
struct QEL_EXPORT QelFirewallRule : QelRecord<QelFirewallRule> {
    /// Values that the service uses for protocol, chain and policy.
    static constexpr std::string_view PT_TCP = "tcp";
    static constexpr std::string_view PT_UDP = "udp";
    static constexpr std::string_view CT_INPUT = "INPUT";
    static constexpr std::string_view CT_OUTPUT = "OUTPUT";
    static constexpr std::string_view CT_FORWARD = "FORWARD";
    static constexpr std::string_view PL_ACCEPT = "ACCEPT";
    static constexpr std::string_view PL_DROP = "DROP";
    static constexpr std::string_view PL_REJECT = "REJECT";

    /// Addresses of one side.
    struct NetAddress : QelRecord<NetAddress> {
        std::string address; ///< empty for any
        std::string mask;

        /// Formats "ADDRESS" or "ADDRESS<separator>MASK"; empty without an address.
        [[nodiscard]] std::string toString(char separator) const;

        friend bool operator==(const NetAddress&, const NetAddress&) = default;

        static const QelWireLayout& wire;
    };

    static constexpr int noPort = -1;
    struct ValidPort {
        constexpr bool operator()(int port) const { return port != noPort; }
    };

    /// Ports of one side.  Empty if `first` is `noPort`; `second` is then not sent.
    struct PortRange : QelRecord<PortRange> {
        int first = noPort;
        int second = noPort; ///< last port; `noPort` for the single port `first`

        /// Formats "FIRST" or "FIRST<separator>SECOND"; empty without ports.
        [[nodiscard]] std::string toString(char separator) const;

        friend bool operator==(const PortRange&, const PortRange&) = default;

        static const QelWireLayout& wire;
    };

    std::string name;
    std::string text1195; ///< required: an empty one can be written but not read
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

    /// Reader: returns -1 if `name` or `text1195` is missing, or an address or a port range is malformed.
    /// Writer: always returns 0.
    static const QelWireLayout& wire;
};

} // namespace Qel
