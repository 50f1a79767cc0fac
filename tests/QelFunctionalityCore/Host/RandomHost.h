#pragma once

#include "QelFunctionalityCore/Values/RandomValues.h"
#include "support/RandomFills.h"

namespace Qel::TestSupport {

/// An entry of a top list, with integers, which are valid in both representations.
inline RandomFill topSet() {
    return inTurn({inChild(1866, identifier()), numberIn(1018, 0, 999)});
}

/// A time, a string or both.
inline void putDate(RandomRecord& random, QelMessageIterator& cursor) {
    const unsigned parts = random.below(3) + 1;
    if ((parts & 1U) != 0)
        cursor.putValueTime(random.time() + 1, 1004);
    if ((parts & 2U) != 0)
        textIn(2007, "day ")(random, cursor);
}

/// Each row has one value per column name; the names are sorted, as the record keeps them in a map.
inline RandomFill processRows() {
    return several(3, inChild(1080, inTurn({numberIn(1081, 0, 999), textIn(1082), textIn(1082)})));
}
inline RandomFill processColumns() {
    return inTurn({fixedIn(1083, "command"), fixedIn(1083, "user")});
}

inline void putPackagePath(RandomRecord& random, QelMessageIterator& cursor) {
    cursor.putValueBase64("/" + random.text(), 1156);
}

inline bool holdsPackageOrPath(const QelMessageIterator& cursor) {
    return cursor.seekPresence(1295) == 0 || cursor.seekPresence(1156) == 0;
}

inline RandomFamily randomHost() {
    // Group IDs are written as values of the group elements, but read from their children.
    constexpr RecordExceptions holdsCredentials{.needsSecondRoundTrip = true};
    // A server without an address is written as an empty element, which is not read back as a server.
    constexpr RecordExceptions holdsServer{.needsSecondRoundTrip = true};
    return {
        .withoutTable{
            {"QelCommonDevice", oneOf({"QelCommonDevice", "QelScsiDevice", "QelWindowsDevice"})},
            {"QelPackage", oneOf({"QelPackage", "QelPackageDeb", "QelPackageRpm"})},
            {"QelProcessInfo", numberIn(1081, 0, 999)}, // no columns, because a standalone row has no names
            {"QelTopData", inTurn({several(3, inChild(1179, topSet())), numberIn(1040, 0, 4999)})},
            {"QelTopData::TopSet", topSet()},
        },
        .replacesTable{{"QelDate", putDate}},
        .fields{
            {{"QelDevMountInfo", 1117}, textIn(1117, "at ")},
            {{"QelInstallationPackage", 1156}, putPackagePath}, // an empty path is not written
            {{"QelPackageListModificationData", 1007}, numberIn(1007, 0, 2)},
            {{"QelProcessList", 1080}, processRows()},
            {{"QelProcessList", 1083}, processColumns()},
            {{"QelService", 0}, nothing()}, // the repeated fields are skipped
            {{"QelService", 1422}, atLeastOne(4, numberIn(1422, 0, 6))},
        },
        .exceptions{
            {"QelInstallationPackage", {.isReadable = holdsPackageOrPath}},
            {"QelMailerConfig", {.leavesCursorInDescendant = true}}, // at the accounts element
            {"QelProcessMExecParams", holdsCredentials},
            {"QelProgCredentials", holdsCredentials},
            {"QelVncConnectionInfo", holdsServer},
            {"QelVncConsoleInfo", holdsServer},
        },
    };
}

} // namespace Qel::TestSupport
