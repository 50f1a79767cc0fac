#pragma once

#include <span>

#include "QelMessage/QelMessageIterator.h"

// Masks that cross the wire as empty elements.  For source files only.

namespace Qel {

/// A bit of a mask, and the child that is there when the bit is.
struct PresenceBit {
    unsigned bit;
    int element;
};

inline unsigned readPresenceBits(const QelMessageIterator& cursor, std::span<const PresenceBit> bits) {
    unsigned mask = 0;
    for (const PresenceBit& each : bits)
        if (cursor.seekPresence(each.element) == 0)
            mask |= each.bit;
    return mask;
}

inline void writePresenceBits(QelMessageIterator& cursor, unsigned mask, std::span<const PresenceBit> bits) {
    for (const PresenceBit& each : bits)
        if ((mask & each.bit) != 0)
            cursor.putChild(each.element);
}

} // namespace Qel
