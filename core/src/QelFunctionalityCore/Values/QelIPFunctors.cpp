#include "QelFunctionalityCore/Values/QelIPFunctors.h"

#include <string>

#include "QelCore/QelIPConversions.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

int QelIPReader::operator()(const QelMessageIterator& cursor, QelIPv6& address) const {
    std::string text;
    const int result = cursor.getValue(text, getEmptyID());
    if (result == 0)
        address = QelIPv6(text);
    return result;
}

int QelIPReader::operator()(const QelMessageIterator& cursor, unsigned int& address) const {
    std::string text;
    if (cursor.getValue(text, getEmptyID()) != 0)
        return -1;
    address = strToIp(text);
    return 0;
}

int QelIPWriter::operator()(QelMessageIterator& cursor, const QelIPv6& address) const {
    return cursor.putValue(address.toString(), getEmptyID());
}

int QelIPWriter::operator()(QelMessageIterator& cursor, unsigned int address) const {
    return cursor.putValue(ipToStr(address), getEmptyID());
}

int QelIPPrettyWriter::operator()(QelMessageIterator& cursor, const QelIPv6& address) const {
    if (const auto compatible = IPv6Format::IPv4Compatible::test(address))
        return QelIPWriter()(cursor, compatible->v4().numeric());
    return QelIPWriter()(cursor, address);
}

} // namespace Qel
