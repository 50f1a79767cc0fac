#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"

namespace Qel {

/// A bool of an interface profile, sent as a string.
struct QEL_EXPORT QelTextBool {
    bool value = false;

    constexpr QelTextBool() = default;
    // Both conversions are implicit, so that the field can be used as a bool.
    constexpr QelTextBool(bool on) : value(on) {}
    constexpr operator bool() const { return value; }

    /// Returns "true" or "false".
    [[nodiscard]] std::string toString() const;
    /// Parses the prefix: "true" or "0" is true, "false" or "1" is false.  For any other string, returns -1 and leaves
    /// the value unchanged.
    ///
    /// The digits are inverted compared to all other records.  Stored profiles depend on it.
    int fromString(std::string_view text);
};

} // namespace Qel
