#include "QelFunctionalityCore/Profile/QelDesktopSettings.h"

#include "QelFunctionalityCore/Profile/QelTextBoolCodec.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDesktopAction> : WireWords<QelDesktopAction> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(2205, required, always),
        field<&R::flag2206>(2206, required, always),
    };
};
const QelWireLayout& QelDesktopAction::wire = wireLayoutOf<QelDesktopAction>;

template <> struct Wire<QelDesktopSettings> : WireWords<QelDesktopSettings> {
    static constexpr QelWireField fields[] = {
        field<&R::option2207>(2207, required, always), field<&R::option2203>(2203, required, always),
        field<&R::option2202>(2202, required, always), field<&R::option2201>(2201, required, always),
        field<&R::option2208>(2208, required, always), wrapped<&R::actions>(1503, 2204, required, always),
    };
};
const QelWireLayout& QelDesktopSettings::wire = wireLayoutOf<QelDesktopSettings>;

} // namespace Qel
