#include "QelFunctionalityCore/Network/QelRowSet.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <int id, bool encoded>
int QelStringTree<id, encoded>::Reader::operator()(const QelMessageIterator& cursor, QelStringTree& cell) const {
    if ((encoded ? cursor.getValueBase64(cell.value, id) : cursor.getValue(cell.value, id)) == 0)
        return 0;
    cell.value.clear();
    return QelReaderList(Reader(), "cell"_element, QelReaderOptional)(cursor, cell.children);
}

template <int id, bool encoded>
int QelStringTree<id, encoded>::Writer::operator()(QelMessageIterator& cursor, const QelStringTree& cell) const {
    if (cell.value.empty())
        return QelWriterList(Writer(), "cell"_element)(cursor, cell.children);
    return encoded ? cursor.putValueBase64(cell.value, id) : cursor.putValue(cell.value, id);
}

template struct QelStringTree<1026, false>::Reader;
template struct QelStringTree<1026, false>::Writer;
template struct QelStringTree<1018, true>::Reader;
template struct QelStringTree<1018, true>::Writer;

namespace {

int readRows(const QelMessageIterator& cursor, QelRowSet& set) {
    const auto readRow = QelReaderList(QelRowSet::Cell::Reader(), "cell"_element, QelReaderRequired);
    return QelReaderList(readRow, "row"_element, QelReaderOptional)(cursor, set.rows);
}
int writeRows(QelMessageIterator& cursor, const QelRowSet& set) {
    return QelWriterList(QelWriterList(QelRowSet::Cell::Writer(), "cell"_element), "row"_element)(cursor, set.rows);
}

template <int QelRowSet::*number, int id> int readNumber(const QelMessageIterator& cursor, QelRowSet& set) {
    if (cursor.getValue(set.*number, id) != 0)
        set.*number = QelRowSet::unknown;
    return 0;
}
template <int QelRowSet::*number, int id> int writeNumber(QelMessageIterator& cursor, const QelRowSet& set) {
    return set.*number == QelRowSet::unknown ? 0 : cursor.putValue(set.*number, id);
}

} // namespace

template <> struct Wire<QelRowSet> : WireWords<QelRowSet> {
    static constexpr QelWireField fields[] = {
        list<&R::columns>("cell"_element, required),
        step<&readRows, &writeRows>("rows", "row"_element, ignored, ifSet),
        step<&readNumber<&R::count, "count"_element>, &writeNumber<&R::count, "count"_element>>(
            "count", "count"_element, ignored, ifSet),
        step<&readNumber<&R::value1040, "total"_element>, &writeNumber<&R::value1040, "total"_element>>(
            "value1040", "total"_element, ignored, ifSet),
    };
};
const QelWireLayout& QelRowSet::wire = wireLayoutOf<QelRowSet>;

} // namespace Qel
