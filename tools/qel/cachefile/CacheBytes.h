#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

#include "qel/cachefile/CacheFileFormat.h"

namespace Qel::Tool {

/// The bytes of a cache file, read as the format's integers and pointers.
class CacheBytes {
public:
    explicit CacheBytes(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::uint64_t size() const { return m_bytes.size(); }

    [[nodiscard]] bool holds(std::uint64_t offset, std::uint64_t length) const {
        return offset <= size() && length <= size() - offset;
    }

    /// The caller has seen to it that the bytes are there.
    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset, std::uint32_t length) const {
        return m_bytes.subspan(static_cast<std::size_t>(offset), length);
    }

    /// Number of 32 bits.  The caller has seen to it that the bytes are there.
    [[nodiscard]] std::uint32_t word(std::uint64_t offset) const { return little<std::uint32_t>(offset); }

    /// The same, signed.
    [[nodiscard]] std::int32_t signedWord(std::uint64_t offset) const {
        return std::bit_cast<std::int32_t>(word(offset));
    }

    /// Number of 64 bits, as keys are compared.
    [[nodiscard]] std::uint64_t doubleWord(std::uint64_t offset) const { return little<std::uint64_t>(offset); }

    /// Where the pointer at `offset` leads, which may lie outside the file; nothing if it is null.
    [[nodiscard]] std::optional<std::int64_t> target(std::uint64_t offset) const {
        const std::int32_t distance = signedWord(offset);
        if (distance == CacheFormat::nullPointer)
            return std::nullopt;
        return static_cast<std::int64_t>(offset) + distance;
    }

private:
    template <class Number> [[nodiscard]] Number little(std::uint64_t offset) const {
        static_assert(std::endian::native == std::endian::little);
        Number number;
        std::memcpy(&number, m_bytes.data() + offset, sizeof number);
        return number;
    }

    std::span<const std::byte> m_bytes;
};

} // namespace Qel::Tool
