#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Sort order requested by a client that fetches a long list page by page.
struct QEL_EXPORT QelPagerSortCondition : QelRecord<QelPagerSortCondition> {
    std::string column;      ///< column name, defined by the service of the list
    bool descending = false; ///< unchanged if the message has none

    static const QelWireLayout& wire;
};

} // namespace Qel
