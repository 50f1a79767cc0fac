#include "QelFunctionalityCore/Values/QelIPAddress.h"

#include "QelCommon/Strings.h"
#include "QelCore/QelIPConversions.h"
#include "QelCore/QelIPv4.h"
#include "QelCore/QelIPv6.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

namespace {

bool isDotted(const std::string& mask) {
    return mask.find('.') != std::string::npos;
}

template <class Address> int compareAs(const std::string& a, const std::string& b) {
    return Address(a).compare(Address(b));
}

std::string dottedNetmask(const std::string& netmask) {
    std::string dotted;
    convertNetmaskToIPFormat(netmask, &dotted);
    return dotted;
}

} // namespace

QelIPAddress::QelIPAddress(const std::string& address, const std::string& mask) : ip(address) {
    setNetmask(mask);
}

QelIPAddress::QelIPAddress(const std::string& text) : ip(text.substr(0, text.find('/'))) {
    if (ip.size() < text.size())
        setNetmask(text.substr(ip.size() + 1));
}

QelIPAddress::QelIPAddress(const std::string& address, unsigned int prefix) : ip(address) {
    if (prefix <= (QelIPv6::isResembling(ip) ? QelIPv6::bits : QelIPv4::bits))
        netmask = std::to_string(prefix);
}

void QelIPAddress::setNetmask(const std::string& mask) {
    if (QelIPv6::isResembling(ip) || !isDotted(mask))
        netmask = mask;
    else
        netmask = std::to_string(QelIPv4::getPerfixLength(mask));
}

std::string QelIPAddress::toStringWithNetwork() const {
    return netmask.empty() ? ip : ip + '/' + netmask;
}

int QelIPAddress::compare(const QelIPAddress& other) const {
    const bool asIPv6 = QelIPv6::isResembling(ip) || QelIPv6::isResembling(other.ip);
    const int order = asIPv6 ? compareAs<QelIPv6>(ip, other.ip) : compareAs<QelIPv4>(ip, other.ip);
    if (order != 0)
        return order;
    const int orderOfNetmasks = netmask.compare(other.netmask);
    return (orderOfNetmasks > 0) - (orderOfNetmasks < 0);
}

int QelIPAddress::Reader::operator()(const QelMessageIterator& cursor, QelIPAddress& address) const {
    if (const int result = cursor.getValue(address.ip, "ip"_element); result != 0)
        return result;
    std::string mask;
    cursor.getValue(mask, "netmask"_element);
    address.setNetmask(mask);
    return 0;
}

int QelIPAddress::Writer::operator()(QelMessageIterator& cursor, const QelIPAddress& address) const {
    const bool isPrefixOfIPv4 = !QelIPv6::isResembling(address.ip) && !isDotted(address.netmask);
    if (!address.netmask.empty())
        cursor.putValue(isPrefixOfIPv4 ? QelIPv4::getNetworkMask(strToUlong(address.netmask)).toString()
                                       : address.netmask,
                        "netmask"_element);
    return cursor.putValue(address.ip, "ip"_element);
}

ipCompare::ipCompare(const QelIPAddress& wanted) : m_ip(wanted.ip), m_dottedNetmask(dottedNetmask(wanted.netmask)) {}

bool ipCompare::operator()(const QelIPAddress& candidate) const {
    if (!m_dottedNetmask.empty() && m_dottedNetmask != dottedNetmask(candidate.netmask))
        return false;
    return m_ip.empty() || m_ip == candidate.ip;
}

} // namespace Qel
