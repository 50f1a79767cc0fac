#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Options of a package manager request: a mask of the bits 1, 2, 4, 8, 16 and 32.  The package manager defines their
/// meaning.
struct QelPackageManagerOptions {
    int options = 0;

    using Reader = QelRecordReader<QelPackageManagerOptions>;
    using Writer = QelRecordWriter<QelPackageManagerOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Options of a request for a list of packages.
struct QelPackageManagerListOptions : QelPackageManagerOptions {
    std::vector<std::string> types; ///< names of the requested kinds of package
    int listFlags = 0;              ///< bit 1; a read sets bits but never clears them

    using Reader = QelRecordReader<QelPackageManagerListOptions>;
    using Writer = QelRecordWriter<QelPackageManagerListOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
