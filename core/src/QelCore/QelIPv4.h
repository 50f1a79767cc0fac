#pragma once

#include <compare>
#include <cstdint>
#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// An IPv4 address, or a network mask of such addresses.
class QEL_EXPORT QelIPv4 {
public:
    /// Number of bits; the longest prefix.
    static constexpr unsigned bits = 32;

    /// 0.0.0.0.
    constexpr QelIPv4() noexcept = default;
    /// From a number whose most significant byte is the first of the dotted quad.
    explicit constexpr QelIPv4(std::uint32_t numeric) noexcept : m_numeric(numeric) {}
    /// From a dotted quad of decimal numbers; 0.0.0.0 for any other string.
    explicit QelIPv4(const std::string& text) noexcept { static_cast<void>(fromString(text)); }

    /// Parses a dotted quad.  Returns -1 and leaves the address unchanged for any other string.
    [[nodiscard]] int fromString(const std::string& text) noexcept;

    /// Returns the dotted quad.
    [[nodiscard]] std::string toString() const;

    /// The number whose most significant byte is the first of the dotted quad.
    [[nodiscard]] constexpr std::uint32_t numeric() const noexcept { return m_numeric; }

    /// Three-way comparison by number: -1, 0 or 1.
    [[nodiscard]] int compare(const QelIPv4& other) const noexcept;

    friend constexpr bool operator==(const QelIPv4&, const QelIPv4&) = default;
    friend constexpr std::strong_ordering operator<=>(const QelIPv4& a, const QelIPv4& b) noexcept {
        return a.m_numeric <=> b.m_numeric;
    }

    /// The mask with `prefix` leading ones; 255.255.255.255 for a prefix above 32.
    [[nodiscard]] static QelIPv4 getNetworkMask(unsigned long prefix) noexcept;

    /// Number of leading ones of a dotted mask, 0 to 32; 0 if `mask` is not a dotted quad.
    [[nodiscard]] static unsigned getPerfixLength(const std::string& mask) noexcept;

private:
    std::uint32_t m_numeric = 0;
};

} // namespace Qel
