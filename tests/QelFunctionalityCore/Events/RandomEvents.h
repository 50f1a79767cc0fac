#pragma once

#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// Nested parameters of random depth.
inline void putParameters(RandomRecord& random, QelMessageIterator& cursor) {
    for (unsigned left = random.below(3) == 0 ? 2 : 0; left > 0; --left)
        inChild(1017, record("QelInfo"))(random, cursor);
}

/// Current value and hard limit, sometimes with a soft limit between them.
inline RandomFill alertValues() {
    return inTurn({bigNumberIn(1065), optionally(bigNumberIn(1066)), bigNumberIn(1067)});
}

inline RandomFamily randomEvents() {
    const RandomFill payload = oneOf({"QelAnyEventData", "QelResourceAlertData", "QelServerGroupAlertData"});
    return {
        .fields{
            {{"QelAnyEventData", 0}, inChild(1307, textIn(1026))},
            {{"QelEvent", 1004}, timeIn(1004)},
            {{"QelEvent", 1307}, inChild(1307, inChild(1913, payload))},
            {{"QelInfo", 1017}, putParameters},
            {{"QelRequestProgressData", 1010}, textIn(1010, "request-")}, // an empty identifier is not written
            {{"QelRequestProgressData", 1004}, timeIn(1004)},
            {{"QelRequestProgressData", 1962}, textIn(1962)},
            {{"QelResourceAlertData", 1065}, alertValues()},
        },
        // A progress record without a request ID omits it, and reads back the request ID of the message.
        .exceptions{{"QelRequestProgressData", {.needsSecondRoundTrip = true}}},
    };
}

} // namespace Qel::TestSupport
