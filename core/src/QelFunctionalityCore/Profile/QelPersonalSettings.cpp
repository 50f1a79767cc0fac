#include "QelFunctionalityCore/Profile/QelPersonalSettings.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelPersonalSettings> : WireWords<QelPersonalSettings> {
    static constexpr QelWireField fields[] = {
        field<&QelPersonalSettings::personalName>(2191, required, always),
        field<&QelPersonalSettings::personalText>(1788, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelPersonalSettings>() {
    return wireLayoutOf<QelPersonalSettings>;
}

} // namespace Qel
