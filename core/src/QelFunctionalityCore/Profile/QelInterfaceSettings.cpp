#include "QelFunctionalityCore/Profile/QelInterfaceSettings.h"

#include "QelFunctionalityCore/Profile/QelTextBoolCodec.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelInterfaceSettings> : WireWords<QelInterfaceSettings> {
    static constexpr QelWireField fields[] = {
        field<&QelInterfaceSettings::option2197>(2197, required, always),
        field<&QelInterfaceSettings::option2195>(2195, required, always),
        field<&QelInterfaceSettings::option2299>(2299, required, always),
        field<&QelInterfaceSettings::option2199>(2199, required, always),
        field<&QelInterfaceSettings::option2192>(2192, required, always),
        field<&QelInterfaceSettings::option2193>(2193, required, always),
        field<&QelInterfaceSettings::option2007>(2007, required, always),
        field<&QelInterfaceSettings::option2194>(2194, required, always),
        field<&QelInterfaceSettings::option2198>(2198, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelInterfaceSettings>() {
    return wireLayoutOf<QelInterfaceSettings>;
}

} // namespace Qel
