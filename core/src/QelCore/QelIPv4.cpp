#include "QelCore/QelIPv4.h"

#include <bit>

#include <arpa/inet.h>

namespace Qel {

int QelIPv4::fromString(const std::string& text) noexcept {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1)
        return -1;
    m_numeric = ntohl(address.s_addr);
    return 0;
}

std::string QelIPv4::toString() const {
    const in_addr address{htonl(m_numeric)};
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &address, text, sizeof text);
}

int QelIPv4::compare(const QelIPv4& other) const noexcept {
    return (*this > other) - (*this < other);
}

QelIPv4 QelIPv4::getNetworkMask(unsigned long prefix) noexcept {
    constexpr std::uint32_t allOnes = ~std::uint32_t{0};
    // A shift by the full width is undefined.
    if (prefix == 0)
        return QelIPv4();
    return QelIPv4(prefix < bits ? allOnes << (bits - prefix) : allOnes);
}

unsigned QelIPv4::getPerfixLength(const std::string& mask) noexcept {
    return static_cast<unsigned>(std::countl_one(QelIPv4(mask).numeric()));
}

} // namespace Qel
