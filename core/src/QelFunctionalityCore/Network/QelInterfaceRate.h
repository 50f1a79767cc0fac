#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Bandwidth limit of one traffic class on a network interface.
struct QEL_EXPORT QelInterfaceRate : QelRecord<QelInterfaceRate> {
    unsigned int rateClass = 0; ///< traffic class
    long long rate = 0;         ///< 0 for unlimited

    /// Returns -1, 0 or 1; orders by class, then by rate.
    [[nodiscard]] int compare(const QelInterfaceRate& other) const;

    /// Formats "*:CLASS:RATE" in decimal, where "*" matches every interface name; empty if unlimited.
    [[nodiscard]] std::string toString() const;

    /// Parses class and rate from "NAME:CLASS[:RATE]"; any non-empty name is accepted.  Returns 1 if the name is empty
    /// or the class is malformed.  Without a second colon the rate is unchanged.  A malformed rate becomes 0, one out
    /// of range the nearest limit.
    [[nodiscard]] int fromStringEx(const std::string& text);

    static const QelWireLayout& wire;
};

} // namespace Qel
