#include "qel/cachefile/Hexadecimal.h"

#include <iomanip>
#include <sstream>

namespace Qel::Tool {

std::string hexadecimal(std::uint32_t number) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << std::setfill('0') << std::setw(8) << number;
    return text.str();
}

} // namespace Qel::Tool
