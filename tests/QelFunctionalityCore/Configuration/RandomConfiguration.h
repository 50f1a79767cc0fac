#pragma once

#include "QelFunctionalityCore/Values/RandomValues.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// A parameter with any name.
inline void putParameter(RandomRecord& random, QelMessageIterator& cursor) {
    inChild(static_cast<int>(1001 + random.below(20)), identifier())(random, cursor);
}

inline RandomFamily randomConfiguration() {
    return {
        .withoutTable{{"QelConfiguration", inChild(1307, several(3, putParameter))}},
        .fields{{{"QelConnectivityInfo", 1687}, textIn(1687, "host-")}}, // an empty address cannot be written
    };
}

} // namespace Qel::TestSupport
