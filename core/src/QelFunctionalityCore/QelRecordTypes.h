#pragma once

#include <span>
#include <string_view>

#include "QelMessage/QelRecordType.h"

namespace Qel {

/// Every record type of the library, ordered by name.
[[nodiscard]] std::span<const QelRecordType> recordTypes();

/// The record type of this name, or null.
[[nodiscard]] const QelRecordType* findRecordType(std::string_view name);

} // namespace Qel
