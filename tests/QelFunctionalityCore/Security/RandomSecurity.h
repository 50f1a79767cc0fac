#pragma once

#include <string>

#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelFunctionalityCore/Values/RandomValues.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// The base class fields of a directory realm, with the fixed type.
inline void putRealm(RandomRecord& random, QelMessageIterator& cursor) {
    record("QelRealm")(random, cursor);
    cursor.deleteChild(1007);
    cursor.putValue(QelDirRealm::directoryType, 1007);
}

inline RandomFill rules() {
    return inChild(2276, several(3, inChild(2273, inTurn({textIn(1010), textIn(1018)}))));
}

inline void putVersion(RandomRecord& random, QelMessageIterator& cursor) {
    cursor.putValue("0." + std::to_string(random.below(9)), 1221);
}

/// A session data entry; one in three has no value.
inline void putSessionItem(RandomRecord& random, QelMessageIterator& cursor) {
    textIn(1240)(random, cursor);
    if (random.below(3) != 0)
        inChild(1018, identifier())(random, cursor);
}

inline void putUserSearch(RandomRecord& random, QelMessageIterator& cursor) {
    cursor.putValue(random.text() + "dc=EXAMPLE,dc=org", 1959);
}

inline void putKnownSID(RandomRecord&, QelMessageIterator& cursor) {
    cursor.putValueBase64(std::string("\1\1\0\0\0\0\0\5\7\0\0\0", 12), 0); // S-1-5-7
}

inline bool holdsName(const QelMessageIterator& cursor) {
    return cursor.seekPresence(1026) == 0;
}

inline RandomFamily randomSecurity() {
    // An empty name is not written, but reads require one. A role is a task.
    constexpr RecordExceptions wantsName{.isReadable = holdsName};
    return {
        .withoutTable{
            {"QelDirAttribute", inTurn({textIn(1026), several(3, textIn(1018))})},
            {"QelSID", putKnownSID},
        },
        .fields{
            {{"QelDirRealm", 0}, putRealm},
            {{"QelDirRealm", 1687}, textIn(1687, "host-")},
            {{"QelDirRealm", 1704}, numberIn(1704, 1, 65535)},
            {{"QelDirRealm", 1958}, fixedIn(1958, "dc=example,dc=org")},
            {{"QelDirRealm", 1959}, putUserSearch},
            {{"QelDirSortControl", 0}, record("QelDirControl")},
            {{"QelDirVlvControl", 0}, record("QelDirControl")},
            {{"QelEffectivePolicyAssignment", 2276}, rules()},
            {{"QelInfrastructureFolderAttributes", 1007}, numberIn(1007, 1, 5)},
            {{"QelPolicy", 2276}, rules()},
            {{"QelSession", 1320}, numberIn(1320, -1, 2)},
            {{"QelSession", 1221}, putVersion},
            {{"QelSession", 1307}, several(3, inChild(1307, putSessionItem))},
            {{"QelTask", 1026}, textIn(1026, "task-")}, // reads require a name
        },
        .exceptions{
            {"QelRole", wantsName},
            {"QelTask", wantsName},
        },
    };
}

} // namespace Qel::TestSupport
