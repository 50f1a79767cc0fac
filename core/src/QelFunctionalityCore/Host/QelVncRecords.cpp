#include "QelFunctionalityCore/Host/QelVncRecords.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVncConnectionInfo> : WireWords<QelVncConnectionInfo> {
    static constexpr int nsId = 292, typeId = 390;
    static constexpr QelWireField fields[] = {
        field<&QelVncConnectionInfo::server2308>(2308, ignored, ifSet).kept().unchecked(),
        field<&QelVncConnectionInfo::server2309>(2309, ignored, ifSet).kept().unchecked(),
        field<&QelVncConnectionInfo::password>(1032, required, always, base64),
    };
};
template <> const QelWireLayout& qelWireLayout<QelVncConnectionInfo>() {
    return wireLayoutOf<QelVncConnectionInfo>;
}

template <> struct Wire<QelVncConsoleInfo> : WireWords<QelVncConsoleInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelVncConsoleInfo::value2310>(2310, ignored, ifSet).kept().unchecked(),
        field<&QelVncConsoleInfo::value2312>(2312, ignored, always).unchecked(),
        field<&QelVncConsoleInfo::value2311>(2311, ignored, always).unchecked(),
        field<&QelVncConsoleInfo::connection>(0, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelVncConsoleInfo>() {
    return wireLayoutOf<QelVncConsoleInfo>;
}

} // namespace Qel
