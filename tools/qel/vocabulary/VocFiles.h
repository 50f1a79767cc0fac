#pragma once

#include <string>

#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelMessage.h"
#include "qel/cli/Command.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

/// What a file of vocabularies holds.
enum class VocFileKind {
    map,   ///< any number of vocabularies, with their names
    single ///< one vocabulary without a name, as an agent keeps its own
};

/// Reads a file of vocabularies.  ExitCode::badInput, and an error that names the place, if it can't be read, holds
/// none, or has a name or a version that is longer than one may be.
[[nodiscard]] ExitCode readVocabularies(const std::string& name, QelMessage& message, VocFileKind& kind,
                                        const Console& console);

/// The same for a file that must be a map.
[[nodiscard]] ExitCode readVocMap(const std::string& name, QelMessage& message, const Console& console);

/// Adds `--voc`, with what the vocabularies are for.
void addVocOption(Options& options, const char* purpose);

/// Reads the map that `--voc` names; null without the option.
[[nodiscard]] ExitCode readVocOption(const Invocation& invocation, const Console& console, QelVocMapSP& vocabularies);

} // namespace Qel::Tool
