#pragma once

#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// One of the three forms; the second number of the range follows the first.
inline RandomFill owner(int name, int id, int rangeFrom) {
    return [name, id, rangeFrom](RandomRecord& random, QelMessageIterator& cursor) {
        switch (random.below(3)) {
        case 0:
            textIn(name)(random, cursor);
            break;
        case 1:
            numberIn(id)(random, cursor);
            break;
        default:
            numberIn(rangeFrom)(random, cursor);
            numberIn(rangeFrom + 1)(random, cursor);
        }
    };
}

inline RandomFamily randomFiles() {
    return {
        .fields{
            {{"QelFileFilter", 0}, nothing()}, // no element: the elements present determine the mask
            {{"QelFileFilter", 1025}, owner(1025, 1030, 1142)},
            {{"QelFileFilter", 1029}, owner(1029, 1027, 1144)},
            {{"QelFileType", 0}, nothing()},
            {{"QelFileType", 1161}, nested(3, several(2, inChild(1161, record("QelFileType"))))},
            {{"QelFilerOptions", 1138}, inChild(1138, optionally(inChild(1139, nothing())))},
            {{"QelUserCredentials", 1030}, numberIn(1030)},
            {{"QelUserCredentials", 1027}, inChild(1027, numberIn(1030))},
        },
        // Group numbers are not read where they are written.
        .exceptions{{"QelUserCredentials", {.needsSecondRoundTrip = true}}},
    };
}

} // namespace Qel::TestSupport
