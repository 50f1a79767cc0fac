#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// How a package manager is to go about a request: a mask of the bits 1, 2, 4, 8, 16 and 32, whose meaning lies with
/// the package managers.
struct QelPackageManagerOptions {
    int options = 0;

    using Reader = QelRecordReader<QelPackageManagerOptions>;
    using Writer = QelRecordWriter<QelPackageManagerOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The same for a request for a list of packages.
struct QelPackageManagerListOptions : QelPackageManagerOptions {
    std::vector<std::string> types; ///< names of the kinds of package that are wanted
    int listFlags = 0;              ///< bit 1, which a read adds to those that are set

    using Reader = QelRecordReader<QelPackageManagerListOptions>;
    using Writer = QelRecordWriter<QelPackageManagerListOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
