#pragma once

#include <bitset>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A system service of a managed host.  What the fields mean in full is up to the host agent that fills them.
struct QelService {
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
    std::vector<std::string> requirements; ///< what `provides` of other services must hold
    bool system = false;
    QelOptionalProperty<ServiceLevelsListType> levels; ///< specified without any level, it isn't sent

    /// -1 without a name, and for a level that is none of the seven.  A read adds to the lists and levels that are
    /// there.
    using Reader = QelRecordReader<QelService>;
    using Writer = QelRecordWriter<QelService>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
