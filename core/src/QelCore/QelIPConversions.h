#pragma once

#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// Returns the number of the address in a dotted quad (see QelIPv4::numeric), or the value of a string of decimal
/// digits, since a prefix length may be given instead of a mask.  Returns 0 for any other string.
QEL_EXPORT [[nodiscard]] unsigned int strToIp(const std::string& text) noexcept;

/// Returns the dotted quad of a number as returned by strToIp.
QEL_EXPORT [[nodiscard]] std::string ipToStr(const unsigned int& ip);

/// Converts a prefix length of 0 to 32 in `netmask` to the IPv4 mask as a dotted quad, stored in `*dotted`.  Any other
/// string, including a dotted mask or an empty one, is copied unchanged.
QEL_EXPORT void convertNetmaskToIPFormat(const std::string& netmask, std::string* dotted);

} // namespace Qel
