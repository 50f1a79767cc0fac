#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The credentials for a file operation: a user and groups, each by name or by number.  Names take precedence: numbers
/// are sent only if there are no names.
struct QEL_EXPORT QelUserCredentials : QelRecord<QelUserCredentials> {
    static constexpr unsigned noUid = 0xFFFFFFFF;

    std::string name;
    unsigned uid = noUid;
    std::vector<std::string> groups;
    /// The writer stores each number directly in the list item.  The reader expects it in an element 1030 inside the
    /// item.  So the numbers reach only peers that read the item itself, and are read only from peers that write the
    /// inner element.  Both forms are in use; neither side may change alone.
    std::vector<int> gids;
    int flags = 0;

    /// Reads the user ID from the current element.  On failure, `uid` is unchanged.
    static int getUid(const QelMessageIterator& cursor, unsigned& uid);

    static const QelWireLayout& wire;
};

} // namespace Qel
