#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Constants of the binary form, which docs/binary-form.md specifies.
namespace Qel::QelBinaryFormat {

using Byte = unsigned char;

/// The first byte is not a valid first byte of UTF-8 text.
inline constexpr std::string_view magic = "\xABQEL";
inline constexpr Byte version = 1;

/// Buffer head: magic, version, content type, two zero bytes, checksum.
inline constexpr std::size_t versionOffset = 4;
inline constexpr std::size_t contentOffset = 5;
inline constexpr std::size_t checksumOffset = 8;
inline constexpr std::size_t headSize = 12;

/// Content types.
inline constexpr Byte oneElement = 1;
inline constexpr Byte wholeMessage = 2;

/// Element head: `isElement` combined with the flags of the parts that follow. The parts follow in the order of this
/// list.
namespace Element {
inline constexpr Byte isElement = 0x80;
inline constexpr Byte changesNameSpace = 0x04;
inline constexpr Byte hasType = 0x08;
inline constexpr Byte hasAttributes = 0x10;
inline constexpr Byte hasValue = 0x02;
inline constexpr Byte hasChildren = 0x01;
inline constexpr Byte known = isElement | changesNameSpace | hasType | hasAttributes | hasValue | hasChildren;
/// Marks the end of the children, at the position of an element head.
inline constexpr Byte endOfChildren = 0x00;
} // namespace Element

/// Envelope head: flags of the fields that follow. The fields follow in the order of this list.
namespace Envelope {
inline constexpr Byte hasTime = 0x01;
inline constexpr Byte hasRequestId = 0x02;
inline constexpr Byte hasSender = 0x04;
inline constexpr Byte hasSession = 0x08;
inline constexpr Byte hasOrigin = 0x10;
inline constexpr Byte hasSubscriptions = 0x20;
inline constexpr Byte known = hasTime | hasRequestId | hasSender | hasSession | hasOrigin | hasSubscriptions;
} // namespace Envelope

/// Size of a time in bytes.
inline constexpr unsigned timeSize = 8;

/// A name with an ID is encoded as twice the ID. Names without one are numbered in the order of their first use in the
/// buffer, and encoded as twice that number plus this bit.
inline constexpr std::uint32_t isNumber = 1;

/// Varints have seven bits per byte, least significant first. All bytes but the last have this bit set.
inline constexpr unsigned varintBits = 7;
inline constexpr Byte varintContinues = 0x80;

/// 32-bit words are little-endian.
[[nodiscard]] inline std::uint32_t loadWord(const char* bytes) noexcept {
    std::uint32_t word = 0;
    for (unsigned i = 0; i < 4; ++i)
        word |= std::uint32_t{static_cast<Byte>(bytes[i])} << (8 * i);
    return word;
}
inline void storeWord(char* bytes, std::uint32_t word) noexcept {
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<char>(word >> (8 * i));
}

} // namespace Qel::QelBinaryFormat
