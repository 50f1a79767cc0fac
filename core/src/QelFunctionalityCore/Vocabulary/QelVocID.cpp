#include "QelFunctionalityCore/Vocabulary/QelVocID.h"

#include <string>

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelFunctionalityCore/Vocabulary/VocabularyElements.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace Element = VocabularyElement;

template <> struct Wire<QelVocID> : WireWords<QelVocID> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::name>(Element::name, required, always),
        field<&R::version>(Element::version, required, always),
    };
};
const QelWireLayout& QelVocID::wire = wireLayoutOf<QelVocID>;

namespace {

bool isVersionParameter(const QelMessageIterator& parameter) {
    std::string id;
    return parameter.getValue(id, Element::id) == 0 && id == QelVocID::versionParameter;
}

int readVersion(const QelMessageIterator& vocabulary, QelVocID& vocID) {
    if (vocabulary.firstChild(Element::parameter) != 0)
        return -1;
    int result = -1;
    do {
        if (isVersionParameter(vocabulary)) {
            result = vocabulary.getObject(vocID.version, QelReaderLimitedLengthString(), Element::data);
            break;
        }
    } while (vocabulary.nextSibling(Element::parameter) == 0);
    vocabulary.seekUp();
    return result;
}

} // namespace

int QelVocID::Reader::operator()(const QelMessageIterator& cursor, QelVocID& vocID) const {
    if (versionElement)
        return readByLayout(QelVocID::wire, &vocID, cursor);
    if (cursor.getObject(vocID.name, QelReaderLimitedLengthString(), Element::name) != 0)
        return -1;
    return readVersion(cursor, vocID);
}

int QelVocID::Writer::operator()(QelMessageIterator& cursor, const QelVocID& vocID) const {
    return writeByLayout(QelVocID::wire, &vocID, cursor);
}

} // namespace Qel
