#pragma once

#include "QelFunctionalityCore/Values/RandomValues.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// A configuration with this complex type, base or virtual.
inline RandomFill configuration(int typeID) {
    return [typeID](RandomRecord& random, QelMessageIterator& cursor) {
        cursor.setComplexType(292, typeID);
        record("QelEnvConfig")(random, cursor);
    };
}

inline RandomFamily randomEnvironment() {
    return {
        .withoutTable{
            {"QelEnv", record("QelEnv")},
            {"QelEnvConfig", oneOf({"QelEnvConfig", "QelVEnvConfig"})},
            {"QelVEnvConfig", configuration(121)},
        },
        .fields{
            {{"QelEnv", 1870}, inChild(1870, identifier())},
            {{"QelEnv", 1866}, inChild(1866, identifier())},
            {{"QelEnv", 1192}, inChild(1192, record("QelEnvStatus"))},
            {{"QelEnv", 1003}, several(6, numberIn(1003, 0, 4))},
            {{"QelEnv", 1185}, inChild(1185, configuration(120))},
            {{"QelEnv", 1872}, inChild(1872, configuration(121))},
        },
        // Without a base configuration, an empty one is written.  Read back, it gets the version of an old agent.
        .exceptions{{"QelEnv", {.needsSecondRoundTrip = true}}},
    };
}

} // namespace Qel::TestSupport
