#pragma once

#include <cstdint>
#include <string>

namespace Qel::Tool {

/// "0x" followed by eight uppercase hexadecimal digits.
[[nodiscard]] std::string hexadecimal(std::uint32_t number);

} // namespace Qel::Tool
