#include "QelFunctionalityCore/Profile/QelDesktopSettings.h"

#include "QelFunctionalityCore/Profile/QelTextBoolCodec.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDesktopAction> : WireWords<QelDesktopAction> {
    static constexpr QelWireField fields[] = {
        field<&QelDesktopAction::name>(2205, required, always),
        field<&QelDesktopAction::flag2206>(2206, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDesktopAction>() {
    return wireLayoutOf<QelDesktopAction>;
}

template <> struct Wire<QelDesktopSettings> : WireWords<QelDesktopSettings> {
    static constexpr QelWireField fields[] = {
        field<&QelDesktopSettings::option2207>(2207, required, always),
        field<&QelDesktopSettings::option2203>(2203, required, always),
        field<&QelDesktopSettings::option2202>(2202, required, always),
        field<&QelDesktopSettings::option2201>(2201, required, always),
        field<&QelDesktopSettings::option2208>(2208, required, always),
        wrapped<&QelDesktopSettings::actions>(1503, 2204, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDesktopSettings>() {
    return wireLayoutOf<QelDesktopSettings>;
}

} // namespace Qel
