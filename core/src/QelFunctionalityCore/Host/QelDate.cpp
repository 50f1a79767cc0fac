#include "QelFunctionalityCore/Host/QelDate.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelTimeZone> : WireWords<QelTimeZone> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        field<&R::f1788>(1788, required, always),
    };
};
const QelWireLayout& QelTimeZone::wire = wireLayoutOf<QelTimeZone>;

int QelTimeZone::Reader::operator()(const QelMessageIterator& cursor, QelTimeZone& zone) const {
    for (const QelWireField& field : Wire<QelTimeZone>::fields)
        if (cursor.getValue(*static_cast<std::string*>(field.member(&zone)), field.id) == -1)
            return -1;
    return 0;
}

template <> struct Wire<QelDate> : WireWords<QelDate> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::time>(1004, ignored, always, WireWords::time),
        field<&R::f2007>(2007, ignored, ifSet),
    };
};
const QelWireLayout& QelDate::wire = wireLayoutOf<QelDate>;

int QelDate::Reader::operator()(const QelMessageIterator& cursor, QelDate& date) const {
    const int result = readByLayout(QelDate::wire, &date, cursor);
    if (result == 0 && date.isEmpty()) {
        setErrorMessage("cannot read QelDate: neither time nor string is set");
        return -1;
    }
    return result;
}

int QelDate::Writer::operator()(QelMessageIterator& cursor, const QelDate& date) const {
    if (date.isEmpty()) {
        setErrorMessage("cannot write QelDate: neither time nor string is set");
        return -1;
    }
    return writeByLayout(QelDate::wire, &date, cursor);
}

} // namespace Qel
