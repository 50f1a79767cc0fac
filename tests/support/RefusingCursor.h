#pragma once

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryIterator.h"
#include "support/TestMessage.h"

namespace Qel::TestSupport {

/// A cursor at the root of a message that accepts elements but no values.
class RefusingCursor : public QelBinaryIterator {
public:
    explicit RefusingCursor(const TestMessage& message)
        : QelBinaryIterator(dynamic_cast<const QelBinaryIterator*>(&message.cursor())) {}

    using QelBinaryIterator::putValue;
    using QelBinaryIterator::putValueBase64;
    using QelBinaryIterator::putValueLongLong;
    using QelBinaryIterator::putValueTime;

    int putValue(const std::string&, int) override { return -1; }
    int putValue(int, int) override { return -1; }
    int putValueLongLong(long long, int) override { return -1; }
    int putValueTime(long, int) override { return -1; }
    int putValueBase64(const std::string&, int) override { return -1; }
    int putValueBase64(const char*, int, int) override { return -1; }
};

/// A cursor at the root of a message that accepts no values for an element ID, at any depth.
class ElementRefusingCursor : public QelBinaryIterator {
public:
    ElementRefusingCursor(const TestMessage& message, int element)
        : QelBinaryIterator(dynamic_cast<const QelBinaryIterator*>(&message.cursor())), m_element(element) {}

    using QelBinaryIterator::putValue;
    using QelBinaryIterator::putValueDouble;
    using QelBinaryIterator::putValueLongLong;

    int putValue(const std::string& value, int id) override {
        return isRefused(id) ? -1 : QelBinaryIterator::putValue(value, id);
    }
    int putValueLongLong(long long value, int id) override {
        return isRefused(id) ? -1 : QelBinaryIterator::putValueLongLong(value, id);
    }
    int putValueDouble(double value, int id) override {
        return isRefused(id) ? -1 : QelBinaryIterator::putValueDouble(value, id);
    }

private:
    [[nodiscard]] bool isRefused(int id) const { return (id != 0 ? id : curID()) == m_element; }

    int m_element;
};

/// The result of writing a record to a cursor that accepts no values.
template <class Record> int refusedWrite(const Record& record) {
    const TestMessage message;
    return RefusingCursor(message).putObj(record, 0);
}

} // namespace Qel::TestSupport
