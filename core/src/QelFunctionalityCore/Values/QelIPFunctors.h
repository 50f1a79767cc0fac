#pragma once

#include "QelCore/QelIPv6.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// Reads an address from the value of the current element; -1 if it has none.  A text that is no address reads as the
/// any address, or as 0.
struct QelIPReader {
    int operator()(const QelMessageIterator& cursor, QelIPv6& address) const;
    /// An IPv4 address as a number; a plain decimal number reads as itself.
    int operator()(const QelMessageIterator& cursor, unsigned int& address) const;
};

/// Writes an address as the value of the current element.
struct QelIPWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelIPv6& address) const;
    /// A number goes out as an IPv4 address.
    int operator()(QelMessageIterator& cursor, unsigned int address) const;
};

/// The same, with an IPv4-compatible address as the IPv4 address that it carries.
struct QelIPPrettyWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelIPv6& address) const;
};

} // namespace Qel
