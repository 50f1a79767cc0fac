#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The numbers of the binary form; docs/binary-form.md tells what they are for.
namespace Qel::QelBinaryFormat {

using Byte = unsigned char;

/// The first byte can't begin a text in UTF-8.
inline constexpr std::string_view magic = "\xABQEL";
inline constexpr Byte version = 1;

/// The head of a buffer: magic, version, content, two zero bytes, checksum.
inline constexpr std::size_t versionOffset = 4;
inline constexpr std::size_t contentOffset = 5;
inline constexpr std::size_t checksumOffset = 8;
inline constexpr std::size_t headSize = 12;

/// What is in the buffer.
inline constexpr Byte oneElement = 1;
inline constexpr Byte wholeMessage = 2;

/// The head of an element: `isElement` and some of the others.  The parts follow in the order of the list.
namespace Element {
inline constexpr Byte isElement = 0x80;
inline constexpr Byte changesNameSpace = 0x04;
inline constexpr Byte hasType = 0x08;
inline constexpr Byte hasAttributes = 0x10;
inline constexpr Byte hasValue = 0x02;
inline constexpr Byte hasChildren = 0x01;
inline constexpr Byte known = isElement | changesNameSpace | hasType | hasAttributes | hasValue | hasChildren;
/// Stands behind the last child in place of a head.
inline constexpr Byte endOfChildren = 0x00;
} // namespace Element

/// The head of an envelope: some of these.  The fields follow in the order of the list.
namespace Envelope {
inline constexpr Byte hasTime = 0x01;
inline constexpr Byte hasRequestId = 0x02;
inline constexpr Byte hasSender = 0x04;
inline constexpr Byte hasSession = 0x08;
inline constexpr Byte hasOrigin = 0x10;
inline constexpr Byte hasSubscriptions = 0x20;
inline constexpr Byte known = hasTime | hasRequestId | hasSender | hasSession | hasOrigin | hasSubscriptions;
} // namespace Envelope

/// Bytes of a time.
inline constexpr unsigned timeSize = 8;

/// A name is told by twice its ID, or by twice its number and this.
inline constexpr std::uint32_t isNumber = 1;

/// Numbers are written seven bits a byte, the lowest first; all bytes but the last have this bit.
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
