#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryIterator.h"
#include "support/TestMessage.h"

namespace Qel::TestSupport {

/// A cursor at the root of a message that records which children of the root are accessed.
class WatchingCursor : public QelBinaryIterator {
public:
    explicit WatchingCursor(const TestMessage& message)
        : QelBinaryIterator(dynamic_cast<const QelBinaryIterator*>(&message.cursor())) {}

    using QelBinaryIterator::firstChild;
    using QelBinaryIterator::getValue;
    using QelBinaryIterator::getValueBase64;
    using QelBinaryIterator::getValueDouble;
    using QelBinaryIterator::getValueLongLong;
    using QelBinaryIterator::getValueTime;
    using QelBinaryIterator::getValueTimeZone;
    using QelBinaryIterator::seek;
    using QelBinaryIterator::seekPresence;

    int seek(int id) const override { return QelBinaryIterator::seek(noted(id)); }
    int seekPresence(int id) const override { return QelBinaryIterator::seekPresence(noted(id)); }
    int firstChild(int id) const override { return QelBinaryIterator::firstChild(noted(id)); }
    int getValue(std::string& value, int id) const override { return QelBinaryIterator::getValue(value, noted(id)); }
    int getValue(int& value, int id) const override { return QelBinaryIterator::getValue(value, noted(id)); }
    int getValue(bool& value, int id) const override { return QelBinaryIterator::getValue(value, noted(id)); }
    int getValueBase64(std::string& value, int id) const override {
        return QelBinaryIterator::getValueBase64(value, noted(id));
    }
    int getValueLongLong(long long& value, int id) const override {
        return QelBinaryIterator::getValueLongLong(value, noted(id));
    }
    int getValueDouble(double& value, int id) const override {
        return QelBinaryIterator::getValueDouble(value, noted(id));
    }
    int getValueTime(long& value, int id) const override { return QelBinaryIterator::getValueTime(value, noted(id)); }
    int getValueTimeZone(long& value, int& zone, int id) const override {
        return QelBinaryIterator::getValueTimeZone(value, zone, noted(id));
    }

    /// The accessed children, each once, in the order of first access.
    [[nodiscard]] const std::vector<int>& requested() const { return m_requested; }

private:
    int noted(int id) const {
        const bool isKnown = std::find(m_requested.begin(), m_requested.end(), id) != m_requested.end();
        if (id != 0 && !isKnown && curName() == "/")
            m_requested.push_back(id);
        return id;
    }

    mutable std::vector<int> m_requested;
};

/// The children that reading a record at the root of a message accesses, in order.
template <class Record> std::vector<int> readingOrderIn(const TestMessage& message) {
    const WatchingCursor cursor(message);
    Record read;
    static_cast<void>(cursor.getObj(read, 0));
    return cursor.requested();
}

/// The children that reading a record accesses in a message to which `written` was written.
template <class Record> std::vector<int> readingOrderOf(const Record& written) {
    const TestMessage message;
    message->setTime(1);
    static_cast<void>(message.cursor().putObj(written, 0));
    return readingOrderIn<Record>(message);
}

} // namespace Qel::TestSupport
