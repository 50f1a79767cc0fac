#pragma once

#include <cstdint>
#include <string>

namespace Qel::Tool {

/// The number as 0x and eight digits.
[[nodiscard]] std::string hexadecimal(std::uint32_t number);

} // namespace Qel::Tool
