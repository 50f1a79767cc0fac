#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelBinaryFormat.h"

/// A buffer in binary form with this body and a valid checksum.  `content` is `oneElement` or `wholeMessage`.
inline std::string sealedMessage(unsigned char content, std::string_view body) {
    using namespace Qel::QelBinaryFormat;
    std::string bytes(magic);
    bytes += static_cast<char>(version);
    bytes += static_cast<char>(content);
    bytes.resize(headSize);
    bytes += body;
    storeWord(bytes.data() + checksumOffset, Qel::QelBinaryCodec::checksum(bytes));
    return bytes;
}
