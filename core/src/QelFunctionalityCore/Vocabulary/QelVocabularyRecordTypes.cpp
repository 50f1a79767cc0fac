#include "QelFunctionalityCore/QelFamilyRecordTypes.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

namespace {

// Reads an identity with its own version element, not that of an enclosing vocabulary.
struct LoneVocIDReader : QelVocID::Reader {
    LoneVocIDReader() : Reader(true) {}
};

} // namespace

std::vector<QelRecordType> vocabularyRecordTypes() {
    return {
        makeRecordType<QelVocID, LoneVocIDReader>("QelVocID", &QelVocID::wire),
        makeRecordType<QelVocPrototype>("QelVocPrototype"),
    };
}

} // namespace Qel
