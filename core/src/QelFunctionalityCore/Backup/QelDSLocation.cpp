#include "QelFunctionalityCore/Backup/QelDSLocation.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDSLocation> : WireWords<QelDSLocation> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::type>(1007, required, always),
        field<&R::path>(1156, required, always, base64),
        field<&R::authName>(1630, ignored, always),
        field<&R::password>(1032, ignored, always),
    };
};
const QelWireLayout& QelDSLocation::wire = wireLayoutOf<QelDSLocation>;

template <> struct Wire<QelDSConfiguration> : WireWords<QelDSConfiguration> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::location>(1828, required, always),
    };
};
const QelWireLayout& QelDSConfiguration::wire = wireLayoutOf<QelDSConfiguration>;

} // namespace Qel
