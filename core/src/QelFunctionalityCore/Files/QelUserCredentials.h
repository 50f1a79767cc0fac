#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// As whom a file operation is done: a user and groups, each by name or by number.  The user's name goes before the
/// number, and the groups' names before theirs: only one of the two crosses the wire.
struct QelUserCredentials {
    static constexpr unsigned noUid = 0xFFFFFFFF;

    std::string name;
    unsigned uid = noUid;
    std::vector<std::string> groups;
    /// The writer puts each number on the item itself, while the reader looks for it in an element 1030 within the
    /// item.  So the numbers reach only peers that read the item, and come only from those that write the element
    /// within: both are on the wire by now, and neither side may change alone.
    std::vector<int> gids;
    int flags = 0;

    /// The user's number in the current element; a failure leaves `uid` as it was.
    static int getUid(const QelMessageIterator& cursor, unsigned& uid);

    using Reader = QelRecordReader<QelUserCredentials>;
    using Writer = QelRecordWriter<QelUserCredentials>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
