#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel::TestSupport {

/// An empty message with a cursor at its root.
class TestMessage {
public:
    TestMessage() : TestMessage(created()) {}
    /// Owns `message`.
    explicit TestMessage(QelMessage* message) : m_message(message), m_cursor(m_message->rootIterator()) {}

    [[nodiscard]] QelMessage* get() const { return m_message.get(); }
    QelMessage* operator->() const { return m_message.get(); }
    [[nodiscard]] QelMessageIterator& cursor() const { return *m_cursor; }
    /// Another cursor at the root.
    [[nodiscard]] std::unique_ptr<QelMessageIterator> root() const {
        return std::unique_ptr<QelMessageIterator>(m_message->rootIterator());
    }

private:
    static QelMessage* created() {
        QelMessage* const message = QelMessage::getFactory()->createNew();
        if (message->create(0) != 0)
            std::abort();
        return message;
    }

    auto_destroy<QelMessage> m_message;
    std::unique_ptr<QelMessageIterator> m_cursor;
};

/// Copies and frees a malloc string returned by an operation; "(null)" for null.
[[nodiscard]] inline std::string taken(char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text ? text : "(null)";
}

/// The binary form of the current element; empty on failure.
[[nodiscard]] inline std::string flattened(const QelMessageIterator& cursor) {
    char* buffer = nullptr;
    int length = 0;
    if (cursor.serializeFromChild(&buffer, &length) != 0)
        return {};
    const std::unique_ptr<char, decltype(&std::free)> owner(buffer, &std::free);
    return {buffer, static_cast<std::size_t>(length)};
}

/// The binary form of a whole message; empty on failure.
[[nodiscard]] inline std::string binaryOf(const QelMessage& message) {
    std::string bytes;
    return message.toBinary(bytes) == 0 ? bytes : std::string();
}

[[nodiscard]] inline std::string textOf(const QelMessage& message) {
    return taken(message.toTextEx(0, {}, 0));
}

/// The IDs of the children in order; 0 for a name without an ID.
[[nodiscard]] inline std::vector<int> childIDs(const QelMessageIterator& cursor) {
    std::vector<int> ids;
    if (cursor.firstChild() != 0)
        return ids;
    do
        ids.push_back(cursor.curID());
    while (cursor.nextSibling() == 0);
    cursor.seekUp();
    return ids;
}

/// The number of children with an ID.
[[nodiscard]] inline int countChildren(const QelMessageIterator& cursor, int id) {
    if (cursor.firstChild(id) != 0)
        return 0;
    int count = 1;
    while (cursor.nextSibling(id) == 0)
        ++count;
    cursor.seekUp();
    return count;
}

/// The number of all children.
[[nodiscard]] inline int countChildren(const QelMessageIterator& cursor) {
    return static_cast<int>(childIDs(cursor).size());
}

/// The value of a child, or "(none)".
[[nodiscard]] inline std::string childValue(const QelMessageIterator& cursor, int id) {
    std::string value = "(none)";
    static_cast<void>(cursor.getValue(value, id));
    return value;
}

} // namespace Qel::TestSupport
