#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <memory>
#include <string>

#include "QelCommon/Export.h"
#include "QelCore/QelIPv4.h"

namespace Qel {

/// An IPv6 address.
class QEL_EXPORT QelIPv6 {
public:
    /// Number of bits; the longest prefix.
    static constexpr unsigned bits = 128;

    /// The address as four numbers, most significant first.
    using Words = std::array<std::uint32_t, 4>;

    /// The unspecified ("any") address, "::".
    constexpr QelIPv6() noexcept = default;
    explicit constexpr QelIPv6(const Words& words) noexcept : m_words(words) {}
    /// The IPv4-compatible address (RFC 4291, 2.5.5.1): 96 zeros and the 32 bits of `address`.
    explicit constexpr QelIPv6(const QelIPv4& address) noexcept : m_words{0, 0, 0, address.numeric()} {}
    /// From the string form of an IPv6 address, or of an IPv4 address, which yields the IPv4-compatible one.  The any
    /// address for any other string, including one with a zone or a prefix length.
    explicit QelIPv6(const std::string& text) noexcept;

    /// Returns the canonical form (RFC 5952): lower case, the longest run of zeros as "::", an IPv4-compatible address
    /// with a trailing dotted quad.
    [[nodiscard]] std::string toString() const;

    /// Three-way comparison by number: -1, 0 or 1.
    [[nodiscard]] int compare(const QelIPv6& other) const noexcept;

    [[nodiscard]] constexpr bool isAny() const noexcept { return *this == QelIPv6(); }
    [[nodiscard]] constexpr const Words& words() const noexcept { return m_words; }

    friend constexpr bool operator==(const QelIPv6&, const QelIPv6&) = default;
    friend constexpr std::strong_ordering operator<=>(const QelIPv6& a, const QelIPv6& b) noexcept {
        return a.m_words <=> b.m_words;
    }

    /// Whether the string contains a colon, so that it can only be meant as an IPv6 address, valid or not.
    [[nodiscard]] static bool isResembling(const std::string& text) noexcept;

private:
    Words m_words{};
};

/// IPv6 address formats that embed another address.
namespace IPv6Format {

/// An address of the form ::a.b.c.d.
class QEL_EXPORT IPv4Compatible {
public:
    /// Returns null unless `address` is IPv4-compatible.  The any address and the loopback address ::1 are not,
    /// although they start with 96 zeros (RFC 4291, 2.5.2 and 2.5.3).
    [[nodiscard]] static std::unique_ptr<IPv4Compatible> test(const QelIPv6& address);

    [[nodiscard]] QelIPv4 v4() const noexcept { return m_v4; }

private:
    explicit IPv4Compatible(const QelIPv4& v4) noexcept : m_v4(v4) {}

    QelIPv4 m_v4;
};

} // namespace IPv6Format

} // namespace Qel
