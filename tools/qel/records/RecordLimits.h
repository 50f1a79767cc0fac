#pragma once

#include <optional>
#include <string>

#include "QelMessage/QelRecordType.h"

namespace Qel::Tool {

/// Whether child `element` is too long for the name or the version of a QelVocID.
[[nodiscard]] bool isTooLongForVocID(const QelMessageIterator& cursor, int element);

/// Whether a pool can hold the address: neither 0.0.0.0 nor 255.255.255.255.
[[nodiscard]] bool canBeInPool(unsigned address);

// Some readers trust what a message holds, and end the process on a value that their record can't store.  The tool
// reads messages of any origin, so it looks for such values first.

/// Why a pool of addresses in the element under the cursor can't be read; nothing if no address prevents it.
[[nodiscard]] std::optional<std::string> findFatalAddress(const QelMessageIterator& cursor);

/// The same for a record of any type.
[[nodiscard]] std::optional<std::string> findFatalValue(const QelRecordType& type, const QelMessageIterator& cursor);

} // namespace Qel::Tool
