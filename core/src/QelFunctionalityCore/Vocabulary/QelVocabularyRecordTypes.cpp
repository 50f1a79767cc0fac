#include "QelFunctionalityCore/QelFamilyRecordTypes.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

namespace {

// An identity in a message of its own, not that of the vocabulary around it.
struct LoneVocIDReader : QelVocID::Reader {
    LoneVocIDReader() : Reader(true) {}
};

} // namespace

std::vector<QelRecordType> vocabularyRecordTypes() {
    return {
        makeRecordType<QelVocID, LoneVocIDReader>("QelVocID", &qelWireLayout<QelVocID>()),
        makeRecordType<QelVocPrototype>("QelVocPrototype"),
    };
}

} // namespace Qel
