#include "QelCore/QelIPConversions.h"

#include "QelCommon/Strings.h"
#include "QelCore/QelIPv4.h"

namespace Qel {

namespace {

/// Parses decimal digits without a sign.
bool parseDigits(const std::string& text, unsigned int& number) noexcept {
    return !text.starts_with('+') && parseNumber(text, number);
}

} // namespace

unsigned int strToIp(const std::string& text) noexcept {
    unsigned int number = 0;
    return parseDigits(text, number) ? number : QelIPv4(text).numeric();
}

std::string ipToStr(const unsigned int& ip) {
    return QelIPv4(ip).toString();
}

void convertNetmaskToIPFormat(const std::string& netmask, std::string* dotted) {
    unsigned int prefix = 0;
    if (parseDigits(netmask, prefix) && prefix <= QelIPv4::bits)
        *dotted = QelIPv4::getNetworkMask(prefix).toString();
    else
        *dotted = netmask;
}

} // namespace Qel
