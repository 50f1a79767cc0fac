#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An operating system.
struct QEL_EXPORT QelOS : QelRecord<QelOS> {
    QelOS() = default;
    /// A null pointer leaves the field unspecified.
    QelOS(const char* kind, const char* name, const char* version, const char* detail);

    /// Compares kind, name, version and detail, ignoring case; an unspecified field compares as an empty string.
    [[nodiscard]] int compare(const QelOS& other) const;

    QelOptionalProperty<std::string> osKind; ///< "linux", "windows"
    QelOptionalProperty<std::string> osName; ///< the distribution or product
    QelOptionalProperty<std::string> osVersion;
    QelOptionalProperty<std::string> osDetail; ///< a kernel release, an edition

    static const QelWireLayout& wire;
};

} // namespace Qel
