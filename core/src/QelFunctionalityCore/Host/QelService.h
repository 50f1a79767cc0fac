#pragma once

#include <bitset>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A system service of a managed host.  The host agent that fills the fields defines their exact meaning.
struct QEL_EXPORT QelService : QelRecord<QelService> {
    static constexpr int unknownState = -1;

    /// A flag for each of the run levels 0 to 6.
    static constexpr int levelCount = 7;
    using ServiceLevelsListType = std::bitset<levelCount>;

    std::string name;
    std::string description;
    int state = unknownState;
    std::string info;
    bool enabled = false;
    std::string status;
    std::string startScript;
    std::string stopScript;
    std::vector<std::string> provides;
    std::vector<std::string> requirements; ///< names that must occur in `provides` of other services
    bool system = false;
    QelOptionalProperty<ServiceLevelsListType> levels; ///< if specified but empty, not written

    /// Reader: returns -1 if there is no name or a level is out of range.  It appends to the lists and levels
    /// and does not clear them first.
    static const QelWireLayout& wire;
};

} // namespace Qel
