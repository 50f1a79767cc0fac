#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace Qel {

/// An IPv4 address, or a network mask of such addresses.
class QelIPv4 {
public:
    /// Number of bits; the longest prefix.
    static constexpr unsigned bits = 32;

    /// 0.0.0.0.
    constexpr QelIPv4() noexcept = default;
    /// From a number whose highest byte is the first of the dotted quad.
    explicit constexpr QelIPv4(std::uint32_t numeric) noexcept : m_numeric(numeric) {}
    /// From a dotted quad of decimal numbers; 0.0.0.0 for any other text.
    explicit QelIPv4(const std::string& text) noexcept { static_cast<void>(fromString(text)); }

    /// Becomes what the dotted quad `text` says.  -1, and unchanged, for any other text.
    [[nodiscard]] int fromString(const std::string& text) noexcept;

    /// Dotted quad.
    [[nodiscard]] std::string toString() const;

    /// The number whose highest byte is the first of the dotted quad.
    [[nodiscard]] constexpr std::uint32_t numeric() const noexcept { return m_numeric; }

    /// -1, 0 or 1, by number.
    [[nodiscard]] int compare(const QelIPv4& other) const noexcept;

    friend constexpr bool operator==(const QelIPv4&, const QelIPv4&) = default;
    friend constexpr std::strong_ordering operator<=>(const QelIPv4& a, const QelIPv4& b) noexcept {
        return a.m_numeric <=> b.m_numeric;
    }

    /// The mask of this many leading ones; 255.255.255.255 for a prefix above 32.
    [[nodiscard]] static QelIPv4 getNetworkMask(unsigned long prefix) noexcept;

    /// How many ones a dotted mask begins with, 0 to 32; 0 for a text that is no dotted quad.
    [[nodiscard]] static unsigned getPerfixLength(const std::string& mask) noexcept;

private:
    std::uint32_t m_numeric = 0;
};

} // namespace Qel
