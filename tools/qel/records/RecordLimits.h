#pragma once

#include <optional>
#include <string>

#include "QelMessage/QelRecordType.h"

namespace Qel::Tool {

/// True if the value of child `element` exceeds the length of the name or version of a QelVocID.
[[nodiscard]] bool isTooLongForVocID(const QelMessageIterator& cursor, int element);

/// True if the address is allowed in a pool: all but 0.0.0.0 and 255.255.255.255.
[[nodiscard]] bool canBeInPool(unsigned address);

// Some readers trust the content of a message and abort the process on a value that their record cannot store.  The
// tool reads untrusted messages, so it searches for such values first.

/// Searches the address pool in the element under the cursor for an address that would abort the process.  Returns the
/// error message, or nullopt if there is none.
[[nodiscard]] std::optional<std::string> findFatalAddress(const QelMessageIterator& cursor);

/// Searches a record of the given type for a value that would abort the process.  Returns the error message, or nullopt
/// if there is none.
[[nodiscard]] std::optional<std::string> findFatalValue(const QelRecordType& type, const QelMessageIterator& cursor);

} // namespace Qel::Tool
