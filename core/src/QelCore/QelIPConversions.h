#pragma once

#include <string>

namespace Qel {

/// The number of an IPv4 address (see QelIPv4::numeric) from a dotted quad, or any number from its decimal digits,
/// since a prefix length may stand where a mask does; 0 for every other text.
[[nodiscard]] unsigned int strToIp(const std::string& text) noexcept;

/// Dotted quad of such a number.
[[nodiscard]] std::string ipToStr(const unsigned int& ip);

/// Stores in `*dotted` the IPv4 mask of `netmask` as a dotted quad, if `netmask` is a prefix length of 0 to 32.  Every
/// other text, a dotted mask and the empty one among them, is stored as it is.
void convertNetmaskToIPFormat(const std::string& netmask, std::string* dotted);

} // namespace Qel
