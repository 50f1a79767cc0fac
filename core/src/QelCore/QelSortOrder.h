#pragma once

#include "QelCommon/Export.h"

namespace Qel {

/// Process-wide order of sets of environment identifiers: 0 by identifier; any other value by the numeric sort key of
/// the environment, if the environment cache contains one.  Initially 0.  Set it before building such sets: a set built
/// under one order is not sorted under the other.
QEL_EXPORT extern int sort_order_by_veid;

} // namespace Qel
