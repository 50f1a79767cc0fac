#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Rights on an object, as right numbers and as operation names.  The agent defines the meaning of the numbers.
struct QEL_EXPORT QelObjectRights : QelRecord<QelObjectRights> {
    QelGUID object;
    std::vector<int> rights;
    std::set<std::string> operations;

    static const QelWireLayout& wire;
};

/// Granted rights.
struct QelAce : QelRecordAs<QelObjectRights, 0, 50> {};

/// Rights to be checked.
struct QelCheck : QelRecordAs<QelObjectRights, 0, 50> {};

} // namespace Qel
