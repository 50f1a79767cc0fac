#pragma once

#include <string>

#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelMessage.h"
#include "qel/cli/Command.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

/// Content of a vocabulary file.
enum class VocFileKind {
    map,   ///< any number of named vocabularies
    single ///< one unnamed vocabulary, the form in which an agent stores its own
};

/// Reads a vocabulary file.  Returns ExitCode::badInput if it cannot be read, contains no vocabulary, or contains a
/// name or version that exceeds the limit, after printing an error with the position.
[[nodiscard]] ExitCode readVocabularies(const std::string& name, QelMessage& message, VocFileKind& kind,
                                        const Console& console);

/// Like readVocabularies(), but also rejects a file that is not a map.
[[nodiscard]] ExitCode readVocMap(const std::string& name, QelMessage& message, const Console& console);

/// Adds the option `--voc`; `purpose` is its help text.
void addVocOption(Options& options, const char* purpose);

/// Reads the map specified by `--voc`; `vocabularies` stays null without the option.
[[nodiscard]] ExitCode readVocOption(const Invocation& invocation, const Console& console, QelVocMapSP& vocabularies);

} // namespace Qel::Tool
