#pragma once

#include "QelMessage/QelWireLayout.h"

// Private header.

namespace Qel {

/// Writes a record whose wire table ends with a list.  Returns -1 if a row before the list fails, 1, the failure code
/// of list writers, if the list fails, 0 otherwise.
[[nodiscard]] inline int writeWithListLast(const QelWireLayout& layout, const void* record,
                                           QelMessageIterator& cursor) {
    QelWireLayout head = layout;
    head.fields = layout.fields.first(layout.fields.size() - 1);
    if (writeByLayout(head, record, cursor) != 0)
        return -1;
    QelWireLayout list = layout;
    list.fields = layout.fields.last(1);
    return writeByLayout(list, record, cursor) == 0 ? 0 : 1;
}

} // namespace Qel
