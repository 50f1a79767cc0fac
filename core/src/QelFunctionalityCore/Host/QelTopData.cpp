#include "QelFunctionalityCore/Host/QelTopData.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readValue(const QelMessageIterator& cursor, QelTopData::Value& value, bool isWhole, int id) {
    return isWhole ? cursor.getValueLongLong(value.whole, id) : cursor.getValueDouble(value.real, id);
}

int writeValue(QelMessageIterator& cursor, const QelTopData::Value& value, bool isWhole, int id) {
    return isWhole ? cursor.putValueLongLong(value.whole, id) : cursor.putValueDouble(value.real, id);
}

bool isFilled(const QelEIDList& list) {
    return !list.empty();
}

} // namespace

int QelTopData::TopSet::Reader::operator()(const QelMessageIterator& cursor, TopSet& entry) const {
    if (cursor.getObj(entry.eid, "eid"_element) != 0)
        return -1;
    return readValue(cursor, entry.value, m_isWhole, "value"_element);
}

int QelTopData::TopSet::Writer::operator()(QelMessageIterator& cursor, const TopSet& entry) const {
    if (cursor.putObj(entry.eid, "eid"_element) != 0)
        return -1;
    return writeValue(cursor, entry.value, m_isWhole, "value"_element);
}

int QelTopData::Reader::operator()(const QelMessageIterator& cursor, QelTopData& data) const {
    data.isWhole = m_isWhole;
    if (QelReaderList(TopSet::Reader(m_isWhole), "top_entry"_element, QelReaderOptional)(cursor, data.entries) != 0)
        return -1;
    return readValue(cursor, data.total, m_isWhole, "total"_element);
}

int QelTopData::Writer::operator()(QelMessageIterator& cursor, const QelTopData& data) const {
    if (QelWriterList(TopSet::Writer(data.isWhole), "top_entry"_element)(cursor, data.entries) != 0)
        return -1;
    return writeValue(cursor, data.total, data.isWhole, "total"_element);
}

template <> struct Wire<QelTopInfo> : WireWords<QelTopInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::f1017>(1017, required, always),
        flag<&R::f1378>(1378),
        flag<&R::f1346>(1346),
        fieldIf<&R::f1899, isFilled>(1899, ignored),
    };
};
const QelWireLayout& QelTopInfo::wire = wireLayoutOf<QelTopInfo>;

} // namespace Qel
