#include "QelFunctionalityCore/Network/QelRowSet.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int cellElement = 1082;
constexpr int rowElement = 1739;
constexpr int countElement = 1259;
constexpr int totalElement = 1040;

} // namespace

template <int id, bool encoded>
int QelStringTree<id, encoded>::Reader::operator()(const QelMessageIterator& cursor, QelStringTree& cell) const {
    if ((encoded ? cursor.getValueBase64(cell.value, id) : cursor.getValue(cell.value, id)) == 0)
        return 0;
    cell.value.clear();
    return QelReaderList(Reader(), cellElement, QelReaderOptional)(cursor, cell.children);
}

template <int id, bool encoded>
int QelStringTree<id, encoded>::Writer::operator()(QelMessageIterator& cursor, const QelStringTree& cell) const {
    if (cell.value.empty())
        return QelWriterList(Writer(), cellElement)(cursor, cell.children);
    return encoded ? cursor.putValueBase64(cell.value, id) : cursor.putValue(cell.value, id);
}

template struct QelStringTree<1026, false>::Reader;
template struct QelStringTree<1026, false>::Writer;
template struct QelStringTree<1018, true>::Reader;
template struct QelStringTree<1018, true>::Writer;

namespace {

int readRows(const QelMessageIterator& cursor, QelRowSet& set) {
    const auto readRow = QelReaderList(QelRowSet::Cell::Reader(), cellElement, QelReaderRequired);
    return QelReaderList(readRow, rowElement, QelReaderOptional)(cursor, set.rows);
}
int writeRows(QelMessageIterator& cursor, const QelRowSet& set) {
    return QelWriterList(QelWriterList(QelRowSet::Cell::Writer(), cellElement), rowElement)(cursor, set.rows);
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
        list<&R::columns>(cellElement, required),
        step<&readRows, &writeRows>("rows", rowElement, ignored, ifSet),
        step<&readNumber<&R::count, countElement>, &writeNumber<&R::count, countElement>>("count", countElement,
                                                                                          ignored, ifSet),
        step<&readNumber<&R::value1040, totalElement>, &writeNumber<&R::value1040, totalElement>>(
            "value1040", totalElement, ignored, ifSet),
    };
};
const QelWireLayout& QelRowSet::wire = wireLayoutOf<QelRowSet>;

} // namespace Qel
