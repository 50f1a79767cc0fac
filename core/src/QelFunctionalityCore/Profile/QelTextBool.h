#pragma once

#include <string>
#include <string_view>

namespace Qel {

/// A bool of an interface profile, which travels as a text.
struct QelTextBool {
    bool value = false;

    constexpr QelTextBool() = default;
    // Implicit, both: a record's user sees a bool.
    constexpr QelTextBool(bool on) : value(on) {}
    constexpr operator bool() const { return value; }

    /// "true" or "false".
    [[nodiscard]] std::string toString() const;
    /// Goes by how the text begins: with "true" or "0" it is true, with "false" or "1" false.  -1, and the value as it
    /// was, for any other.
    ///
    /// The digits mean the reverse of what they do in all other records.  Profiles have been stored that way, so it
    /// stays.
    int fromString(std::string_view text);
};

} // namespace Qel
