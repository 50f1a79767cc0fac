#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QelCommon/Export.h"

namespace Qel {

/// Whether a terminal or an editor interprets the character instead of displaying it: the C0 and C1 controls (ECMA-48)
/// and DEL, the line and paragraph separators, and the bidirectional formatting characters (UAX #9).
QEL_EXPORT [[nodiscard]] bool isControlCharacter(std::uint32_t code) noexcept;

/// Returns a copy that is safe to print on one line of a terminal.  Newline and tab become \n and \t; every byte of
/// another control character or of malformed UTF-8 becomes \xHH.  The ASCII characters in `kept` are copied unchanged.
QEL_EXPORT [[nodiscard]] std::string showControls(std::string_view text, std::string_view kept = {});

} // namespace Qel
