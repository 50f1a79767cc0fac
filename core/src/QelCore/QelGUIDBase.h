#pragma once

#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "QelCommon/Export.h"

namespace Qel {

/// A 128-bit identifier: 16 bytes.  Its string form is the bytes in order, in lower-case 8-4-4-4-12 notation.
///
/// It is stored in files that 32-bit and 64-bit processes map at the same time, so its memory layout is a format: the
/// 16 bytes in order, aligned to 4.  The first half is bytes 0 to 7 and the second half bytes 8 to 15, each a
/// little-endian 64-bit number.  Identifiers are ordered by the first half, then by the second, both unsigned.  Sorted
/// tables in those files depend on this order.
class QEL_EXPORT QelGUIDBase {
public:
    static constexpr std::size_t byteCount = 16;

    /// The null identifier: all bytes zero.
    constexpr QelGUIDBase() noexcept = default;
    /// From 16 bytes of any alignment.
    explicit QelGUIDBase(const void* bytes) noexcept;
    /// From the first and the second half.
    constexpr QelGUIDBase(long long first, long long second) noexcept
        : QelGUIDBase(std::bit_cast<QelGUIDBase>(
              Halves{static_cast<std::uint64_t>(first), static_cast<std::uint64_t>(second)})) {}

    /// Assigns a new unique identifier from libuuid; never null.
    void generate() noexcept;

    /// Returns the canonical 36-character string.
    [[nodiscard]] std::string toString() const;

    /// Parses the canonical form, upper or lower case, and nothing else.  Returns -1 and leaves the identifier
    /// unchanged for any other string or a null pointer.
    [[nodiscard]] int fromString(const char* text) noexcept;

    /// True unless this is the null identifier.
    [[nodiscard]] constexpr bool isValid() const noexcept { return *this != QelGUIDBase(); }

    /// Returns the two halves.
    constexpr void getData(unsigned long long& first, unsigned long long& second) const noexcept {
        const Halves all = halves();
        first = all.first;
        second = all.second;
    }

    /// The 32 most significant bits in the order of identifiers.
    [[nodiscard]] constexpr std::uint32_t leadingBits() const noexcept { return m_words[1]; }

    friend constexpr bool operator==(const QelGUIDBase& a, const QelGUIDBase& b) noexcept {
        return a.halves() == b.halves();
    }
    friend constexpr std::strong_ordering operator<=>(const QelGUIDBase& a, const QelGUIDBase& b) noexcept {
        const Halves x = a.halves();
        const Halves y = b.halves();
        return x.first != y.first ? x.first <=> y.first : x.second <=> y.second;
    }
    /// Not derived from the three-way comparison, which is slower: this is the inner loop of searches in sorted tables.
    friend constexpr bool operator<(const QelGUIDBase& a, const QelGUIDBase& b) noexcept {
        const Halves x = a.halves();
        const Halves y = b.halves();
        return x.first != y.first ? x.first < y.first : x.second < y.second;
    }

private:
    struct Halves {
        std::uint64_t first;
        std::uint64_t second;
        friend constexpr bool operator==(const Halves&, const Halves&) = default;
    };

    [[nodiscard]] constexpr Halves halves() const noexcept { return std::bit_cast<Halves>(*this); }

    std::uint32_t m_words[4] = {};
};

static_assert(std::endian::native == std::endian::little, "an identifier's halves are little-endian in shared files");
static_assert(sizeof(QelGUIDBase) == QelGUIDBase::byteCount && alignof(QelGUIDBase) == 4);
static_assert(std::is_standard_layout_v<QelGUIDBase> && std::is_trivially_copyable_v<QelGUIDBase>);

} // namespace Qel
