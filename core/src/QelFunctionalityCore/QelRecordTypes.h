#pragma once

#include <span>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecordType.h"

namespace Qel {

/// All record types of the library, sorted by name.
QEL_EXPORT [[nodiscard]] std::span<const QelRecordType> recordTypes();

/// Returns the record type with this name, or null.  A template instance that has an alias is listed under the alias;
/// the name of the template finds it too.
QEL_EXPORT [[nodiscard]] const QelRecordType* findRecordType(std::string_view name);

} // namespace Qel
