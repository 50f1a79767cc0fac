#pragma once

#include <span>
#include <string_view>

#include "QelMessage/QelRecordType.h"

namespace Qel {

/// Every record type of the library, ordered by name.
[[nodiscard]] std::span<const QelRecordType> recordTypes();

/// The record type of this name, or null.  An instance of a template that has an alias is listed by the alias, and is
/// found by the template's name, too.
[[nodiscard]] const QelRecordType* findRecordType(std::string_view name);

} // namespace Qel
