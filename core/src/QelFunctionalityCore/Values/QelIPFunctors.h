#pragma once

#include "QelCommon/Export.h"
#include "QelCore/QelIPv6.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// Reads an address from the value of the current element; nonzero if it has none.  A value that is not an address
/// reads as the any-address, or 0.
struct QEL_EXPORT QelIPReader {
    int operator()(const QelMessageIterator& cursor, QelIPv6& address) const;
    /// An IPv4 address as a number.  Also accepts a plain decimal number.
    int operator()(const QelMessageIterator& cursor, unsigned int& address) const;
};

/// Writes an address as the value of the current element.
struct QEL_EXPORT QelIPWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelIPv6& address) const;
    /// Writes the number as a dotted quad.
    int operator()(QelMessageIterator& cursor, unsigned int address) const;
};

/// Writes an address as the value of the current element, an IPv4-compatible address as the embedded IPv4 address.
struct QEL_EXPORT QelIPPrettyWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelIPv6& address) const;
};

} // namespace Qel
