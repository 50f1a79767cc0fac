#include "QelFunctionalityCore/Backup/QelDSLocation.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDSLocation> : WireWords<QelDSLocation> {
    static constexpr QelWireField fields[] = {
        field<&QelDSLocation::type>(1007, required, always).unchecked(),
        field<&QelDSLocation::path>(1156, required, always, base64).unchecked(),
        field<&QelDSLocation::authName>(1630, ignored, always).unchecked(),
        field<&QelDSLocation::password>(1032, ignored, always).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDSLocation>() {
    return wireLayoutOf<QelDSLocation>;
}

template <> struct Wire<QelDSConfiguration> : WireWords<QelDSConfiguration> {
    static constexpr QelWireField fields[] = {
        field<&QelDSConfiguration::location>(1828, required, always).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDSConfiguration>() {
    return wireLayoutOf<QelDSConfiguration>;
}

} // namespace Qel
