#pragma once

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Flags of a file operation.  What those without a name of their own mean lies with the file service.
struct QelFilerOptions {
    enum Flag : unsigned {
        overwrite = 1, ///< an existing file may be written to
        option1151 = 2,
        option1140 = 4,
        option1138 = 16, ///< the two exclude each other: with both, option1139 is what reaches the reader
        option1139 = 32,
        option1170 = 64,
        option1174 = 128,
    };

    unsigned flags = 0;

    explicit QelFilerOptions(unsigned allFlags = 0) : flags(allFlags) {}

    [[nodiscard]] bool has(Flag flag) const { return (flags & flag) != 0; }

    /// Always 0; what was set before is forgotten.
    using Reader = QelRecordReader<QelFilerOptions>;
    using Writer = QelRecordWriter<QelFilerOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
