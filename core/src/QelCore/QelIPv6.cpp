#include "QelCore/QelIPv6.h"

#include <algorithm>
#include <cstring>

#include <arpa/inet.h>

namespace Qel {

static_assert(sizeof(in6_addr) == sizeof(QelIPv6::Words));

QelIPv6::QelIPv6(const std::string& text) noexcept {
    in6_addr address{};
    if (inet_pton(AF_INET6, text.c_str(), &address) != 1) {
        *this = QelIPv6(QelIPv4(text));
        return;
    }
    std::memcpy(m_words.data(), &address, sizeof address);
    std::ranges::transform(m_words, m_words.begin(), ntohl);
}

std::string QelIPv6::toString() const {
    Words networkOrder;
    std::ranges::transform(m_words, networkOrder.begin(), htonl);
    char text[INET6_ADDRSTRLEN];
    return inet_ntop(AF_INET6, networkOrder.data(), text, sizeof text);
}

int QelIPv6::compare(const QelIPv6& other) const noexcept {
    return (*this > other) - (*this < other);
}

bool QelIPv6::isResembling(const std::string& text) noexcept {
    return text.find(':') != std::string::npos;
}

std::unique_ptr<IPv6Format::IPv4Compatible> IPv6Format::IPv4Compatible::test(const QelIPv6& address) {
    constexpr std::uint32_t loopback = 1;
    const QelIPv4 v4(address.words().back());
    if (v4.numeric() <= loopback || address != QelIPv6(v4))
        return nullptr;
    return std::unique_ptr<IPv4Compatible>(new IPv4Compatible(v4));
}

} // namespace Qel
