#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// An IP address with its netmask, as strings.  They are stored without validation; compare() parses them.
struct QEL_EXPORT QelIPAddress {
    std::string ip;      ///< IPv4 or IPv6
    std::string netmask; ///< prefix length in decimal, see setNetmask(); empty: unset

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    QelIPAddress() = default;
    QelIPAddress(const std::string& address, const std::string& mask);
    /// Parses `address` or `address/mask`; the mask is passed to setNetmask().
    explicit QelIPAddress(const std::string& text);
    /// A prefix longer than the address (32 or 128 bits) leaves the netmask unset.
    QelIPAddress(const std::string& address, unsigned int prefix);

    /// Converts the dotted mask of an IPv4 address to a prefix length.  Stores any other mask unchanged.
    void setNetmask(const std::string& mask);

    /// "ip", or "ip/netmask".
    [[nodiscard]] std::string toStringWithNetwork() const;

    /// Three-way comparison, -1, 0 or 1: by numeric address, then by netmask as a string.  An IPv4 address compared
    /// with an IPv6 address is converted to its IPv4-compatible form.
    [[nodiscard]] int compare(const QelIPAddress& other) const;
};

/// The address is required, the netmask is optional.  Returns the cursor's result for the address.
struct QEL_EXPORT QelIPAddress::Reader {
    int operator()(const QelMessageIterator& cursor, QelIPAddress& address) const;
};

/// Writes an IPv4 netmask as a dotted quad.
struct QEL_EXPORT QelIPAddress::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelIPAddress& address) const;
};

/// Predicate: the candidate has the wanted address string and the wanted netmask.  An empty field of the wanted address
/// matches everything.
class QEL_EXPORT ipCompare {
public:
    explicit ipCompare(const QelIPAddress& wanted);

    [[nodiscard]] bool operator()(const QelIPAddress& candidate) const;

private:
    std::string m_ip;
    std::string m_dottedNetmask;
};

} // namespace Qel
