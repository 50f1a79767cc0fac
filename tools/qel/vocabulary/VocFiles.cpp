#include "qel/vocabulary/VocFiles.h"

#include <memory>

#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/VocabularyElements.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelMessageIterator.h"
#include "qel/records/MessageFiles.h"
#include "qel/records/RecordLimits.h"

namespace Qel::Tool {

namespace {

namespace Element = VocabularyElement;

bool hasLongVersion(const QelMessageIterator& vocabulary) {
    if (vocabulary.firstChild(Element::parameter) != 0)
        return false;
    bool found = false;
    do {
        std::string id;
        vocabulary.getValue(id, Element::id);
        found = id == QelVocID::versionParameter && isTooLongForVocID(vocabulary, Element::data);
    } while (!found && vocabulary.nextSibling(Element::parameter) == 0);
    vocabulary.seekUp();
    return found;
}

ExitCode checkLengths(const std::string& place, const QelMessageIterator& vocabulary, const Console& console) {
    if (isTooLongForVocID(vocabulary, Element::name))
        return console.fail(ExitCode::badInput, place + ": the name is too long");
    if (hasLongVersion(vocabulary))
        return console.fail(ExitCode::badInput, place + ": the version is too long");
    return ExitCode::success;
}

} // namespace

ExitCode readVocabularies(const std::string& name, QelMessage& message, VocFileKind& kind, const Console& console) {
    if (const ExitCode code = readMessage(name, message, console); code != ExitCode::success)
        return code;
    const std::unique_ptr<QelMessageIterator> cursor(message.rootIterator());
    if (cursor->firstChild(Element::vocabulary) == 0) {
        kind = VocFileKind::map;
        int number = 0;
        do {
            const std::string place = shownName(name) + ": vocabulary " + std::to_string(++number);
            if (const ExitCode code = checkLengths(place, *cursor, console); code != ExitCode::success)
                return code;
        } while (cursor->nextSibling(Element::vocabulary) == 0);
        return ExitCode::success;
    }
    // A map without vocabularies is an empty message.
    if (cursor->firstChild() != 0) {
        kind = VocFileKind::map;
        return ExitCode::success;
    }
    cursor->seekRoot();
    kind = VocFileKind::single;
    if (cursor->seek(Element::data) != 0 || cursor->seek(Element::agent) != 0)
        return console.fail(ExitCode::badInput, shownName(name) + ": contains no vocabulary");
    return checkLengths(shownName(name), *cursor, console);
}

ExitCode readVocMap(const std::string& name, QelMessage& message, const Console& console) {
    VocFileKind kind{};
    if (const ExitCode code = readVocabularies(name, message, kind, console); code != ExitCode::success)
        return code;
    if (kind == VocFileKind::map)
        return ExitCode::success;
    return console.fail(ExitCode::badInput,
                        shownName(name) + ": an unnamed vocabulary, not a map; use `qel voc merge` to create a map");
}

void addVocOption(Options& options, const char* purpose) {
    options.add({.name = "voc", .value = "FILE", .help = purpose});
}

ExitCode readVocOption(const Invocation& invocation, const Console& console, QelVocMapSP& vocabularies) {
    if (!invocation.has("voc"))
        return ExitCode::success;
    auto_destroy<QelMessage> message(new QelBinary);
    const ExitCode code = readVocMap(invocation.text("voc"), *message, console);
    if (code == ExitCode::success)
        vocabularies.reset(new QelVocMap(message.release()));
    return code;
}

} // namespace Qel::Tool
