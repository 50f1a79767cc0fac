#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Four limits on user and group IDs.  The host's user service defines what each of them limits.
struct QEL_EXPORT QelUGIDLimits : QelRecord<QelUGIDLimits> {
    int limit1 = 0;
    int limit2 = 0;
    int limit3 = 0;
    int limit4 = 0;

    static const QelWireLayout& wire;
};

} // namespace Qel
