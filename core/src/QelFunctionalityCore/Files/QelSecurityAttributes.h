#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Attributes of a new file.
struct QEL_EXPORT QelSecurityAttributes : QelRecord<QelSecurityAttributes> {
    int mode = 0777; ///< permissions as in chmod(2), not restricted by the umask

    static const QelWireLayout& wire;
};

} // namespace Qel
