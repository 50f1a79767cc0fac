#pragma once

#include <string>
#include <string_view>

/// Base64 (RFC 4648, section 4): with padding, without line breaks.
namespace Qel::QelBase64 {

[[nodiscard]] std::string encode(std::string_view bytes);

/// False, and `bytes` unchanged, if `text` isn't exactly what encode() gives for some bytes.
[[nodiscard]] bool decode(std::string_view text, std::string& bytes);

} // namespace Qel::QelBase64
