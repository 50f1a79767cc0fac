#include "QelFunctionalityCore/Security/QelDirControl.h"

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// The table of QelDirControl, with a required or an optional OID.
template <QelWireRead oidRead> struct ControlWire : WireWords<QelDirControl> {
    using Words = WireWords<QelDirControl>;
    static constexpr int nsId = 270, typeId = 181;
    static constexpr QelWireField fields[] = {
        Words::field<&QelDirControl::oid>(1007, oidRead, Words::always).bestEffort(),
        Words::field<&QelDirControl::critical>(1921, Words::ignored, Words::always).bestEffort(),
        Words::field<&QelDirControl::value>(1018, Words::ignored, Words::always).bestEffort(),
    };
};

struct WithOptionalOid;

} // namespace

template <> struct Wire<QelDirControl> : ControlWire<QelWireRead::required> {};
template <> struct Wire<WithOptionalOid> : ControlWire<QelWireRead::ignored> {};
const QelWireLayout& QelDirControl::wire = wireLayoutOf<QelDirControl>;

int QelDirControl::Reader::operator()(const QelMessageIterator& cursor, QelDirControl& control) const {
    return readByLayout(oidRequired ? wireLayoutOf<QelDirControl> : wireLayoutOf<WithOptionalOid>, &control, cursor);
}

namespace {

// The constructor of a known control sets its OID, which is kept if the message contains none.
int readControl(const QelMessageIterator& cursor, QelDirControl& control) {
    return QelDirControl::Reader(false)(cursor, control);
}

int writeControl(QelMessageIterator& cursor, const QelDirControl& control) {
    return QelDirControl::Writer(true)(cursor, control);
}

} // namespace

template <> struct Wire<QelDirSortControl> : WireWords<QelDirSortControl> {
    static constexpr int nsId = 270, typeId = 184;
    static constexpr QelWireField fields[] = {
        step<&readControl, &writeControl>("QelDirControl", 0, required),
        field<&R::attribute>(1926, required, always),
        field<&R::reverse>(1927, required, always),
    };
};
const QelWireLayout& QelDirSortControl::wire = wireLayoutOf<QelDirSortControl>;

template <> struct Wire<QelDirVlvControl> : WireWords<QelDirVlvControl> {
    static constexpr int nsId = 270, typeId = 183;
    static constexpr QelWireField fields[] = {
        step<&readControl, &writeControl>("QelDirControl", 0, required),
        field<&R::beforeCount>(1923, required, always),
        field<&R::afterCount>(1924, required, always),
        field<&R::offset>(1087, required, always),
        field<&R::count>(1259, required, always),
    };
};
const QelWireLayout& QelDirVlvControl::wire = wireLayoutOf<QelDirVlvControl>;

template class QelDerivedParserFactory<QelDirControl>;

QelDerivedParserFactoryT<QelDirControl, QelDirControl> factoryQelDirControl(true);
QelDerivedParserFactoryT<QelDirVlvControl, QelDirControl> factoryQelDirVlvControl(false);
QelDerivedParserFactoryT<QelDirSortControl, QelDirControl> factoryQelDirSortControl(false);

} // namespace Qel
