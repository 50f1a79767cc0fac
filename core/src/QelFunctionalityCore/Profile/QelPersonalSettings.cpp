#include "QelFunctionalityCore/Profile/QelPersonalSettings.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelPersonalSettings> : WireWords<QelPersonalSettings> {
    static constexpr QelWireField fields[] = {
        field<&R::personalName>(2191, required, always),
        field<&R::personalText>(1788, required, always),
    };
};
const QelWireLayout& QelPersonalSettings::wire = wireLayoutOf<QelPersonalSettings>;

} // namespace Qel
