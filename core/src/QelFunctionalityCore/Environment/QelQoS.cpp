#include "QelFunctionalityCore/Environment/QelQoS.h"

#include <cstdio>

#include "QelCommon/Strings.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

std::string QelQoS::toString() const {
    const std::string hard = longlongToStr(hardLimit);
    return softLimit.isSpecified() ? longlongToStr(softLimit.get()) + ':' + hard : hard;
}

int QelQoS::fromString(const std::string& text) {
    long long soft = 0;
    long long hard = 0;
    const int conversions = std::sscanf(text.c_str(), "%lld:%lld", &soft, &hard); // NOLINT(cert-err34-c)
    if (conversions < 1)
        return -1;
    if (conversions == 1)
        hard = soft;
    hardLimit = hard;
    softLimit.get() = soft;
    return 0;
}

int QelQoS::compare(const QelQoS& other) const {
    if (const int order = id.compare(other.id))
        return order < 0 ? -1 : 1;
    if (hardLimit != other.hardLimit)
        return other.hardLimit < hardLimit ? 1 : -1;
    if (!softLimit.isSpecified() || !other.softLimit.isSpecified() || softLimit.get() == other.softLimit.get())
        return 0;
    return other.softLimit.get() < softLimit.get() ? 1 : -1;
}

template <> struct Wire<QelQoS> : WireWords<QelQoS> {
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, required, always),
        field<&R::hardLimit>(1067, required, always),
        field<&R::softLimit>(1066, ignored, ifSet),
    };
};
const QelWireLayout& QelQoS::wire = wireLayoutOf<QelQoS>;

} // namespace Qel
