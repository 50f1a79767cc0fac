#include "qel/vocabulary/VocFiles.h"

#include <memory>

#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessageIterator.h"
#include "qel/records/MessageFiles.h"
#include "qel/records/RecordLimits.h"

namespace Qel::Tool {

namespace {

bool hasLongVersion(const QelMessageIterator& vocabulary) {
    if (vocabulary.firstChild("parameter"_element) != 0)
        return false;
    bool found = false;
    do {
        std::string id;
        vocabulary.getValue(id, "id"_element);
        found = id == QelVocID::versionParameter && isTooLongForVocID(vocabulary, "data"_element);
    } while (!found && vocabulary.nextSibling("parameter"_element) == 0);
    vocabulary.seekUp();
    return found;
}

ExitCode checkLengths(const std::string& place, const QelMessageIterator& vocabulary, const Console& console) {
    if (isTooLongForVocID(vocabulary, "name"_element))
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
    if (cursor->firstChild("vocabulary"_element) == 0) {
        kind = VocFileKind::map;
        int number = 0;
        do {
            const std::string place = shownName(name) + ": vocabulary " + std::to_string(++number);
            if (const ExitCode code = checkLengths(place, *cursor, console); code != ExitCode::success)
                return code;
        } while (cursor->nextSibling("vocabulary"_element) == 0);
        return ExitCode::success;
    }
    // A map without vocabularies is an empty message.
    if (cursor->firstChild() != 0) {
        kind = VocFileKind::map;
        return ExitCode::success;
    }
    cursor->seekRoot();
    kind = VocFileKind::single;
    if (cursor->seek("data"_element) != 0 || cursor->seek("agent"_element) != 0)
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
    const ExitCode code = readVocMap(invocation.string("voc"), *message, console);
    if (code == ExitCode::success)
        vocabularies.reset(new QelVocMap(message.release()));
    return code;
}

} // namespace Qel::Tool
