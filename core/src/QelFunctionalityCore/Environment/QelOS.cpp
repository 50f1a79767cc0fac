#include "QelFunctionalityCore/Environment/QelOS.h"

#include <strings.h>

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

void assign(QelOptionalProperty<std::string>& property, const char* text) {
    if (text)
        property.set(text);
}

const char* valueOrEmpty(const QelOptionalProperty<std::string>& property) {
    return property.isSpecified() ? property.get().c_str() : "";
}

} // namespace

QelOS::QelOS(const char* kind, const char* name, const char* version, const char* detail) {
    assign(osKind, kind);
    assign(osName, name);
    assign(osVersion, version);
    assign(osDetail, detail);
}

int QelOS::compare(const QelOS& other) const {
    for (const auto member : {&QelOS::osKind, &QelOS::osName, &QelOS::osVersion, &QelOS::osDetail})
        if (const int order = strcasecmp(valueOrEmpty(this->*member), valueOrEmpty(other.*member)))
            return order;
    return 0;
}

template <> struct Wire<QelOS> : WireWords<QelOS> {
    static constexpr int nsId = 292, typeId = 117;
    static constexpr QelWireField fields[] = {
        field<&R::osKind>(1846, ignored, ifSet),
        field<&R::osDetail>(1279, ignored, ifSet),
        field<&R::osVersion>(1223, ignored, ifSet),
        field<&R::osName>(1026, required, always),
    };
};
const QelWireLayout& QelOS::wire = wireLayoutOf<QelOS>;

} // namespace Qel
