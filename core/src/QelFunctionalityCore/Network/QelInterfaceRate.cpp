#include "QelFunctionalityCore/Network/QelInterfaceRate.h"

#include <locale>
#include <sstream>
#include <utility>

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelInterfaceRate> : WireWords<QelInterfaceRate> {
    static constexpr QelWireField fields[] = {
        field<&R::rateClass>(1417, required, always),
        field<&R::rate>(1251, ignored, always).bestEffort(),
    };
};
const QelWireLayout& QelInterfaceRate::wire = wireLayoutOf<QelInterfaceRate>;

int QelInterfaceRate::compare(const QelInterfaceRate& other) const {
    const auto order = std::pair(rateClass, rate) <=> std::pair(other.rateClass, other.rate);
    return (order > 0) - (order < 0);
}

std::string QelInterfaceRate::toString() const {
    return rate == 0 ? std::string() : "*:" + std::to_string(rateClass) + ':' + std::to_string(rate);
}

int QelInterfaceRate::fromStringEx(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic()); // independent of the process's locale
    std::string part;
    if (!std::getline(stream, part, ':') || part.empty() || !(stream >> rateClass))
        return 1;
    if (std::getline(stream, part, ':'))
        stream >> rate;
    return 0;
}

} // namespace Qel
