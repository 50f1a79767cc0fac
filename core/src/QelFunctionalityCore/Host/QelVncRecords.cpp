#include "QelFunctionalityCore/Host/QelVncRecords.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVncConnectionInfo> : WireWords<QelVncConnectionInfo> {
    static constexpr int nsId = 292, typeId = 390;
    static constexpr QelWireField fields[] = {
        field<&R::server2308>(2308, ignored, ifSet).kept().bestEffort(),
        field<&R::server2309>(2309, ignored, ifSet).kept().bestEffort(),
        field<&R::password>(1032, required, always, base64),
    };
};
const QelWireLayout& QelVncConnectionInfo::wire = wireLayoutOf<QelVncConnectionInfo>;

namespace {

// Resets the number to 0 if the read fails.  A plain field would keep its previous value.
template <int QelVncConsoleInfo::*number, int id>
int readNumber(const QelMessageIterator& cursor, QelVncConsoleInfo& console) {
    if (cursor.getValue(console.*number, id) != 0)
        console.*number = 0;
    return 0;
}
template <int QelVncConsoleInfo::*number, int id>
int writeNumber(QelMessageIterator& cursor, const QelVncConsoleInfo& console) {
    return cursor.putValue(console.*number, id);
}

} // namespace

template <> struct Wire<QelVncConsoleInfo> : WireWords<QelVncConsoleInfo> {
    using Console = QelVncConsoleInfo;
    static constexpr QelWireField fields[] = {
        field<&Console::value2310>(2310, ignored, ifSet).kept().bestEffort(),
        step<&readNumber<&Console::value2312, 2312>, &writeNumber<&Console::value2312, 2312>, int>("value2312", 2312,
                                                                                                   ignored)
            .bestEffort(),
        step<&readNumber<&Console::value2311, 2311>, &writeNumber<&Console::value2311, 2311>, int>("value2311", 2311,
                                                                                                   ignored)
            .bestEffort(),
        field<&Console::connection>(0, required, always),
    };
};
const QelWireLayout& QelVncConsoleInfo::wire = wireLayoutOf<QelVncConsoleInfo>;

} // namespace Qel
