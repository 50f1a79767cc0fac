#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Qel {

/// Whether a terminal or an editor acts on the character instead of showing it: the C0 and C1 controls (ECMA-48) and
/// DEL, the line and paragraph separators, and the marks that change the direction of the characters around them
/// (UAX #9).
[[nodiscard]] bool isControlCharacter(std::uint32_t code) noexcept;

/// A copy that is safe to print on a terminal and takes one line: \n, \t, and each byte of another control character or
/// of malformed UTF-8 as \xHH.  The ASCII characters in `kept` are copied.
[[nodiscard]] std::string showControls(std::string_view text, std::string_view kept = {});

} // namespace Qel
