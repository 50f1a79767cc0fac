#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Options of a package manager request: a mask of the bits 1, 2, 4, 8, 16 and 32.  The package manager defines their
/// meaning.
struct QEL_EXPORT QelPackageManagerOptions : QelRecord<QelPackageManagerOptions> {
    int options = 0;

    static const QelWireLayout& wire;
};

/// Options of a request for a list of packages.
struct QEL_EXPORT QelPackageManagerListOptions : QelRecord<QelPackageManagerListOptions, QelPackageManagerOptions> {
    std::vector<std::string> types; ///< names of the requested kinds of package
    int listFlags = 0;              ///< bit 1; a read sets bits but never clears them

    static const QelWireLayout& wire;
};

} // namespace Qel
