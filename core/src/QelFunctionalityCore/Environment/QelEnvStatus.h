#pragma once

#include <compare>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The state of an environment and its current transition, both as codes that the agent defines.
struct QEL_EXPORT QelEnvStatus : QelRecord<QelEnvStatus> {
    QelEnvStatus() = default;
    QelEnvStatus(int inState, int inTransition) : state(inState), transition(inTransition) {}

    /// Orders by state, then by transition.
    friend auto operator<=>(const QelEnvStatus&, const QelEnvStatus&) = default;

    int state = 1;
    int transition = 0;

    static const QelWireLayout& wire;
};

} // namespace Qel
