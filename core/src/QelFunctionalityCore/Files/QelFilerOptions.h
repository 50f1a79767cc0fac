#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Flags of a file operation.  The file service defines the meaning of the numbered ones.  Reading always returns 0 and
/// replaces all flags.
struct QEL_EXPORT QelFilerOptions : QelRecord<QelFilerOptions> {
    enum Flag : unsigned {
        overwrite = 1, ///< an existing file may be written to
        option1151 = 2,
        option1140 = 4,
        option1138 = 16, ///< excludes option1139: if both are set, the reader gets option1139
        option1139 = 32,
        option1170 = 64,
        option1174 = 128,
    };

    unsigned flags = 0;

    explicit QelFilerOptions(unsigned allFlags = 0) : flags(allFlags) {}

    [[nodiscard]] bool has(Flag flag) const { return (flags & flag) != 0; }

    static const QelWireLayout& wire;
};

} // namespace Qel
