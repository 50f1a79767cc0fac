#pragma once

#include <string>

#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// An address as text, with its network.  Texts are taken as they come, and parsed only to be compared.
struct QelIPAddress {
    std::string ip;      ///< IPv4 or IPv6
    std::string netmask; ///< the prefix length in decimal, from setNetmask(); empty if there is none

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    QelIPAddress() = default;
    QelIPAddress(const std::string& address, const std::string& mask);
    /// From `address` or `address/mask`, with a mask as of setNetmask().
    explicit QelIPAddress(const std::string& text);
    /// A prefix beyond the last bit of the address gives no netmask.
    QelIPAddress(const std::string& address, unsigned int prefix);

    /// Takes a mask as it is for an IPv6 address, and a prefix length for either; for an IPv4 address the prefix length
    /// of a dotted mask.
    void setNetmask(const std::string& mask);

    /// "ip", or "ip/netmask".
    [[nodiscard]] std::string toStringWithNetwork() const;

    /// -1, 0 or 1: by the number of the address, then by the netmask as text.  An IPv4 address beside an IPv6 address
    /// counts as the IPv4-compatible one.
    [[nodiscard]] int compare(const QelIPAddress& other) const;
};

/// -1 if there is no address; a netmask may be missing.
struct QelIPAddress::Reader {
    int operator()(const QelMessageIterator& cursor, QelIPAddress& address) const;
};

/// An IPv4 netmask goes out as a dotted quad.
struct QelIPAddress::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelIPAddress& address) const;
};

/// Tests whether an address is a wanted one: the same text and the same netmask, where an empty field of the wanted one
/// fits all.
class ipCompare {
public:
    explicit ipCompare(const QelIPAddress& wanted);

    [[nodiscard]] bool operator()(const QelIPAddress& candidate) const;

private:
    std::string m_ip;
    std::string m_dottedNetmask;
};

} // namespace Qel
