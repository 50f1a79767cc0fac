#pragma once

#include "QelFunctionalityCore/Environment/RandomEnvironment.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

inline RandomFamily randomBackup() {
    // Without a base configuration, an empty one is written, as for an environment.
    constexpr RecordExceptions holdsEnvironment{.needsSecondRoundTrip = true};
    // The connection is read into that of the local agent, whose protocol it keeps if it has none.
    constexpr RecordExceptions completesConnection{.needsSecondRoundTrip = true};
    return {
        .fields{
            {{"QelBackupOptions", 1014}, inChild(1014, textIn(1006))},
            {{"QelExcludeList", 1156}, atLeastOne(4, textIn(1156))},
            {{"QelNewBackupData", 1006}, inChild(1006, record("QelBackup"))},
            {{"QelP2VMigrateOptions", 1185}, inChild(1185, configuration(120))},
            {{"QelP2VMigrateOptions", 1811}, inChild(1811, inChild(1115, textIn(1026)))},
            {{"QelV2VMigrateOptions", 1185}, inChild(1185, configuration(120))},
        },
        .exceptions{
            {"QelBackupMConfig", completesConnection},
            {"QelEnvBackupData", holdsEnvironment},
            {"QelP2VMigrateOptions", holdsEnvironment},
            {"QelV2VMigrateOptions", holdsEnvironment},
        },
    };
}

} // namespace Qel::TestSupport
