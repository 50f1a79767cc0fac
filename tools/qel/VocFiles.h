#pragma once

#include <string>

#include "QelMessage/QelMessage.h"
#include "qel/Console.h"

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

} // namespace Qel::Tool
