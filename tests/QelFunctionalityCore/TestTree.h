#pragma once

#include <string>
#include <vector>

#include "support/TestMessage.h"

namespace Qel {

/// A message to read from and to write to, used as the cursor at its root.
class TestTree {
public:
    QelMessageIterator& operator*() const { return m_message.cursor(); }
    QelMessageIterator* operator->() const { return get(); }
    [[nodiscard]] QelMessageIterator* get() const { return &m_message.cursor(); }

private:
    TestSupport::TestMessage m_message;
};

/// The value of child `id`, or `none` if it has none.
inline std::string valueOf(const QelMessageIterator& cursor, int id, const std::string& none = "(none)") {
    std::string value = none;
    cursor.getValue(value, id);
    return value;
}

/// How many children `id` the element has.
inline int countOf(const QelMessageIterator& cursor, int id) {
    int count = 0;
    if (cursor.firstChild(id) != 0)
        return count;
    do
        ++count;
    while (cursor.nextSibling(id) == 0);
    cursor.seekUp();
    return count;
}

/// How many children the element has.
inline int countOf(const QelMessageIterator& cursor) {
    int count = 0;
    if (cursor.firstChild() != 0)
        return count;
    do
        ++count;
    while (cursor.nextSibling() == 0);
    cursor.seekUp();
    return count;
}

/// The IDs of the element's children.
inline std::vector<int> childIDsOf(const QelMessageIterator& cursor) {
    std::vector<int> ids;
    if (cursor.firstChild() != 0)
        return ids;
    do
        ids.push_back(cursor.curID());
    while (cursor.nextSibling() == 0);
    cursor.seekUp();
    return ids;
}

} // namespace Qel
