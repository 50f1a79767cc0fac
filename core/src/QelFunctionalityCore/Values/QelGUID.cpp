#include "QelFunctionalityCore/Values/QelGUID.h"

#include <string>

#include "QelMessage/QelMessageIterator.h"

namespace Qel {

int QelGUID::Reader::operator()(const QelMessageIterator& cursor, QelGUID& guid) const {
    std::string text;
    if (cursor.getValue(text, getEmptyID()) != 0)
        return -1;
    return guid.fromString(text.c_str());
}

int QelGUID::Writer::operator()(QelMessageIterator& cursor, const QelGUID& guid) const {
    return cursor.putValue(guid.toString(), getEmptyID());
}

} // namespace Qel
