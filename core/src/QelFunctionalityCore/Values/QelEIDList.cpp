#include "QelFunctionalityCore/Values/QelEIDList.h"

#include "QelMessage/QelCombinators.h"

namespace Qel {

namespace {

constexpr int eidElement = 1866;
constexpr int eidNamespace = 292;

} // namespace

int QelEIDList::Reader::operator()(const QelMessageIterator& cursor, QelEIDList& list) const {
    return QelReaderData(list, eidElement, QelReaderOptional)(cursor, list);
}

int QelEIDList::Writer::operator()(QelMessageIterator& cursor, const QelEIDList& list) const {
    return cursor.putObject(list, QelWriterList(QelGUID::Writer(), eidElement, eidNamespace), getEmptyID());
}

} // namespace Qel
