#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Qel {

/// Whether the byte is a continuation byte, 10xxxxxx.
constexpr bool isUtf8Continuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// A code point and the number of bytes that encode it.
struct Utf8Character {
    std::size_t length; ///< 0 if the bytes are malformed
    std::uint32_t code;
};

/// Decodes the first character of `text`, which must not be empty.  Overlong forms, surrogates and truncated sequences
/// are malformed (RFC 3629).
constexpr Utf8Character firstUtf8Character(std::string_view text) noexcept {
    const auto byte = [&](std::size_t i) -> std::uint32_t { return static_cast<unsigned char>(text[i]); };
    const std::uint32_t lead = byte(0);
    if (lead < 0x80)
        return {1, lead};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {0, 0};
    std::uint32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isUtf8Continuation(text[i]))
            return {0, 0};
        code = code << 6U | (byte(i) & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || isSurrogate || code > 0x10FFFF)
        return {0, 0};
    return {length, code};
}

} // namespace Qel
