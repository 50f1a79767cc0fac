#pragma once

#include <set>
#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Filter of a request for a list of environments.
struct QEL_EXPORT QelEnvMListOptions : QelRecord<QelEnvMListOptions> {
    static constexpr int anyCount = -1;

    int count = anyCount;          ///< maximum number of environments
    std::string type;              ///< only this type; empty: all types
    std::set<QelEnvStatus> states; ///< only these states; empty: all states

    static const QelWireLayout& wire;
};

} // namespace Qel
