#pragma once

#include "QelMessage/QelWireLayout.h"

// For source files only.

namespace Qel {

/// Writes a record by its table, whose last row is a list that gives the record its result: 0, -1 when a row before it
/// fails, or 1, as every list, when an item does.
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
