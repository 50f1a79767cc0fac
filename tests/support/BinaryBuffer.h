#pragma once

#include <cstdint>
#include <string>

#include "QelMessage/QelBinaryCodec.h"

namespace Qel::TestSupport {

/// A buffer of the binary form with this body and a valid checksum. `content` is 1 for an element, 2 for a message.
[[nodiscard]] inline std::string sealedBuffer(char content, const std::string& body, const std::string& reserved = {}) {
    constexpr std::size_t headSize = 12;
    constexpr std::size_t contentOffset = 5;
    constexpr std::size_t checksumOffset = 8;
    std::string bytes("\xABQEL\x01\x01\0\0\0\0\0\0", headSize);
    bytes[contentOffset] = content;
    bytes.replace(contentOffset + 1, reserved.size(), reserved);
    bytes += body;
    const std::uint32_t checksum = QelBinaryCodec::checksum(bytes);
    for (unsigned i = 0; i < 4; ++i)
        bytes[checksumOffset + i] = static_cast<char>(checksum >> (8 * i));
    return bytes;
}

} // namespace Qel::TestSupport
