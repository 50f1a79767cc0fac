#include "QelFunctionalityCore/Vocabulary/QelVocID.h"

#include <string>

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVocID> : WireWords<QelVocID> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::name>("name"_element, required, always),
        field<&R::version>("version"_element, required, always),
    };
};
const QelWireLayout& QelVocID::wire = wireLayoutOf<QelVocID>;

namespace {

bool isVersionParameter(const QelMessageIterator& parameter) {
    std::string id;
    return parameter.getValue(id, "id"_element) == 0 && id == QelVocID::versionParameter;
}

int readVersion(const QelMessageIterator& vocabulary, QelVocID& vocID) {
    if (vocabulary.firstChild("parameter"_element) != 0)
        return -1;
    int result = -1;
    do {
        if (isVersionParameter(vocabulary)) {
            result = vocabulary.getObject(vocID.version, QelReaderLimitedLengthString(), "data"_element);
            break;
        }
    } while (vocabulary.nextSibling("parameter"_element) == 0);
    vocabulary.seekUp();
    return result;
}

} // namespace

int QelVocID::Reader::operator()(const QelMessageIterator& cursor, QelVocID& vocID) const {
    if (versionElement)
        return readByLayout(QelVocID::wire, &vocID, cursor);
    if (cursor.getObject(vocID.name, QelReaderLimitedLengthString(), "name"_element) != 0)
        return -1;
    return readVersion(cursor, vocID);
}

int QelVocID::Writer::operator()(QelMessageIterator& cursor, const QelVocID& vocID) const {
    return writeByLayout(QelVocID::wire, &vocID, cursor);
}

} // namespace Qel
