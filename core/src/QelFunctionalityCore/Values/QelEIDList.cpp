#include "QelFunctionalityCore/Values/QelEIDList.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

namespace {

constexpr int eidNamespace = 292;

} // namespace

int QelEIDList::Reader::operator()(const QelMessageIterator& cursor, QelEIDList& list) const {
    return QelReaderData(list, "eid"_element, QelReaderOptional)(cursor, list);
}

int QelEIDList::Writer::operator()(QelMessageIterator& cursor, const QelEIDList& list) const {
    return cursor.putObject(list, QelWriterList(QelGUID::Writer(), "eid"_element, eidNamespace), getEmptyID());
}

} // namespace Qel
