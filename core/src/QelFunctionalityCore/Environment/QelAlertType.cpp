#include "QelFunctionalityCore/Environment/QelAlertType.h"

namespace Qel {

int QelAlertTypeReader::operator()(const QelMessageIterator& cursor, QelAlertType& type) const {
    int value = 0;
    if (cursor.getValue(value, getEmptyID()) != 0)
        return -1;
    if (value < static_cast<int>(QelAlertType::green) || value > static_cast<int>(QelAlertType::black))
        return -1;
    type = static_cast<QelAlertType>(value);
    return 0;
}

int QelAlertTypeWriter::operator()(QelMessageIterator& cursor, const QelAlertType& type) const {
    return cursor.putValue(static_cast<int>(type), getEmptyID());
}

} // namespace Qel
