#include "QelFunctionalityCore/Profile/QelInterfaceSettings.h"

#include "QelFunctionalityCore/Profile/QelTextBoolCodec.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelInterfaceSettings> : WireWords<QelInterfaceSettings> {
    static constexpr QelWireField fields[] = {
        field<&R::option2197>(2197, required, always), field<&R::option2195>(2195, required, always),
        field<&R::option2299>(2299, required, always), field<&R::option2199>(2199, required, always),
        field<&R::option2192>(2192, required, always), field<&R::option2193>(2193, required, always),
        field<&R::option2007>(2007, required, always), field<&R::option2194>(2194, required, always),
        field<&R::option2198>(2198, required, always),
    };
};
const QelWireLayout& QelInterfaceSettings::wire = wireLayoutOf<QelInterfaceSettings>;

} // namespace Qel
