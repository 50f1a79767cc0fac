#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

#include "qel/cachefile/CacheFileFormat.h"

namespace Qel::Tool {

/// Decodes the integers and pointers of a cache file.  The accessors do not check bounds: call holds() first.
class CacheBytes {
public:
    explicit CacheBytes(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::uint64_t size() const { return m_bytes.size(); }

    /// True if `length` bytes at `offset` lie within the file.
    [[nodiscard]] bool holds(std::uint64_t offset, std::uint64_t length) const {
        return offset <= size() && length <= size() - offset;
    }

    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset, std::uint32_t length) const {
        return m_bytes.subspan(static_cast<std::size_t>(offset), length);
    }

    /// Unsigned 32-bit integer.
    [[nodiscard]] std::uint32_t word(std::uint64_t offset) const { return littleEndian<std::uint32_t>(offset); }

    /// Signed 32-bit integer.
    [[nodiscard]] std::int32_t signedWord(std::uint64_t offset) const {
        return std::bit_cast<std::int32_t>(word(offset));
    }

    /// Unsigned 64-bit integer: half of a key.
    [[nodiscard]] std::uint64_t doubleWord(std::uint64_t offset) const { return littleEndian<std::uint64_t>(offset); }

    /// The offset that the pointer at `offset` refers to, possibly outside the file; nullopt for a null pointer.
    [[nodiscard]] std::optional<std::int64_t> target(std::uint64_t offset) const {
        const std::int32_t distance = signedWord(offset);
        if (distance == CacheFormat::nullPointer)
            return std::nullopt;
        return static_cast<std::int64_t>(offset) + distance;
    }

private:
    template <class Number> [[nodiscard]] Number littleEndian(std::uint64_t offset) const {
        static_assert(std::endian::native == std::endian::little);
        Number number;
        std::memcpy(&number, m_bytes.data() + offset, sizeof number);
        return number;
    }

    std::span<const std::byte> m_bytes;
};

} // namespace Qel::Tool
