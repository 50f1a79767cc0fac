#pragma once

namespace Qel {

/// How sets of environment identifiers are ordered in this process: 0 by identifier, anything else by the numeric sort
/// key of the environment, where the environment cache has one.  0 at start.  To be set before such sets are built,
/// since a set that was built under one order isn't sorted under the other.
extern int sort_order_by_veid;

} // namespace Qel
