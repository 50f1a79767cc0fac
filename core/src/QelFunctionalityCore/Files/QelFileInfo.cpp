#include "QelFunctionalityCore/Files/QelFileInfo.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelFileInfo> : WireWords<QelFileInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelFileInfo::data>(1328, ignored, ifSet, base64).unchecked(),
        field<&QelFileInfo::path>(1156, required, always, base64).unchecked(),
        field<&QelFileInfo::offset>(1087, ignored, always).unchecked(),
        field<&QelFileInfo::size>(1024, ignored, always).unchecked(),
    };
    static constexpr int readOrder[] = {1328, 1087, 1024, 1156};
};
template <> const QelWireLayout& qelWireLayout<QelFileInfo>() {
    return wireLayoutOf<QelFileInfo>;
}

} // namespace Qel
