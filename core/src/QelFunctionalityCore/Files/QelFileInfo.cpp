#include "QelFunctionalityCore/Files/QelFileInfo.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelFileInfo> : WireWords<QelFileInfo> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::data>(1328, ignored, ifSet, base64),
        field<&R::path>(1156, required, always, base64),
        field<&R::offset>(1087, ignored, always),
        field<&R::size>(1024, ignored, always),
    };
    static constexpr int readOrder[] = {1328, 1087, 1024, 1156};
};
const QelWireLayout& QelFileInfo::wire = wireLayoutOf<QelFileInfo>;

} // namespace Qel
