#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "QelMessage/QelBinaryIterator.h"

namespace Qel::TestSupport {

/// The IDs of the elements on the path from the root to an element.
using ElementPath = std::vector<int>;

[[nodiscard]] inline ElementPath pathOf(const QelBinaryIterator& cursor) {
    const QelBinaryIterator climber(&cursor);
    ElementPath path;
    for (; climber.curName() != "/"; climber.seekUp())
        path.insert(path.begin(), climber.curID());
    return path;
}

/// A cursor that behaves differently for one element and its descendants.
class CursorWithFault : public QelBinaryIterator {
public:
    /// Starts at the element of `at`.
    CursorWithFault(const QelMessageIterator& at, ElementPath path)
        : QelBinaryIterator(dynamic_cast<const QelBinaryIterator*>(&at)), m_path(std::move(path)) {}

    /// How often the element was accessed.
    [[nodiscard]] int faults() const { return m_faults; }

protected:
    /// Whether child `id`, or for 0 the current element, is the faulty element or a descendant of it.
    bool isFaulty(int id) const {
        ElementPath path = pathOf(*this);
        if (id != 0)
            path.push_back(id);
        const bool found = path.size() >= m_path.size() && std::equal(m_path.begin(), m_path.end(), path.begin());
        m_faults += found ? 1 : 0;
        return found;
    }

private:
    ElementPath m_path;
    mutable int m_faults = 0;
};

/// Finds the element but fails to read its value.
class UnreadableElement : public CursorWithFault {
public:
    using CursorWithFault::CursorWithFault;

    using QelBinaryIterator::getValue;
    using QelBinaryIterator::getValueBase64;
    using QelBinaryIterator::getValueDouble;
    using QelBinaryIterator::getValueLongLong;
    using QelBinaryIterator::getValueTime;

    int getValue(std::string& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValue(value, id);
    }
    int getValue(int& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValue(value, id);
    }
    int getValue(bool& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValue(value, id);
    }
    int getValueBase64(std::string& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValueBase64(value, id);
    }
    int getValueLongLong(long long& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValueLongLong(value, id);
    }
    int getValueDouble(double& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValueDouble(value, id);
    }
    int getValueTime(long& value, int id) const override {
        return isFaulty(id) ? -1 : QelBinaryIterator::getValueTime(value, id);
    }
};

/// Fails to write a value to the element.
class RefusedElement : public CursorWithFault {
public:
    using CursorWithFault::CursorWithFault;

    using QelBinaryIterator::putChild;
    using QelBinaryIterator::putValue;
    using QelBinaryIterator::putValueBase64;
    using QelBinaryIterator::putValueDouble;
    using QelBinaryIterator::putValueLongLong;
    using QelBinaryIterator::putValueTime;

    int putChild(int id) override { return isFaulty(id) ? -1 : QelBinaryIterator::putChild(id); }
    int copyToChild(const QelMessageIterator* from) override {
        return isFaulty(0) ? -1 : QelBinaryIterator::copyToChild(from);
    }
    int putValue(const std::string& value, int id) override {
        return isFaulty(id) ? -1 : QelBinaryIterator::putValue(value, id);
    }
    int putValue(int value, int id) override { return isFaulty(id) ? -1 : QelBinaryIterator::putValue(value, id); }
    int putValueBase64(const std::string& value, int id) override {
        return isFaulty(id) ? -1 : QelBinaryIterator::putValueBase64(value, id);
    }
    int putValueBase64(const char* data, int len, int id) override {
        return isFaulty(id) ? -1 : QelBinaryIterator::putValueBase64(data, len, id);
    }
    int putValueLongLong(long long value, int id) override {
        return isFaulty(id) ? -1 : QelBinaryIterator::putValueLongLong(value, id);
    }
    int putValueDouble(double value, int id) override {
        return isFaulty(id) ? -1 : QelBinaryIterator::putValueDouble(value, id);
    }
    int putValueTime(long value, int id) override {
        return isFaulty(id) ? -1 : QelBinaryIterator::putValueTime(value, id);
    }
};

} // namespace Qel::TestSupport
