#pragma once

#include <string>
#include <string_view>

/// Base64 (RFC 4648, section 4): with padding, without line breaks.
namespace Qel::QelBase64 {

[[nodiscard]] std::string encode(std::string_view bytes);

/// Returns false and leaves `bytes` unchanged unless `text` is exactly what encode() returns for some bytes.
[[nodiscard]] bool decode(std::string_view text, std::string& bytes);

} // namespace Qel::QelBase64
