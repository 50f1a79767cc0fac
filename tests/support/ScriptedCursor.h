#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "QelMessage/QelBinaryIterator.h"
#include "support/TestMessage.h"

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

/// A cursor that calls a script before it accesses an element by ID. The script observes the call, and may replace it
/// with a result of its own, usually a failure.
class ScriptedCursor : public QelBinaryIterator {
public:
    enum class Operation : std::uint8_t {
        find, ///< seek(), seekPresence(), firstChild()
        get,  ///< of values
        put,  ///< of values
        add,  ///< putChild(), copyToChild()
    };
    struct Call {
        Operation operation;
        int id;           ///< 0 for the current element
        ElementPath path; ///< of the element that the call refers to, empty for the root
    };
    /// Returns the result that replaces the call, or no value to execute the call.
    using Script = std::function<std::optional<int>(const Call&)>;

    /// Starts at the element of `at`.
    ScriptedCursor(const QelMessageIterator& at, Script script)
        : QelBinaryIterator(dynamic_cast<const QelBinaryIterator*>(&at)), m_script(std::move(script)) {}

    /// Number of calls that the script replaced.
    [[nodiscard]] int replacedCalls() const { return m_replacedCalls; }

    using QelBinaryIterator::firstChild;
    using QelBinaryIterator::getValue;
    using QelBinaryIterator::getValueBase64;
    using QelBinaryIterator::getValueDouble;
    using QelBinaryIterator::getValueLongLong;
    using QelBinaryIterator::getValueTime;
    using QelBinaryIterator::getValueTimeZone;
    using QelBinaryIterator::putChild;
    using QelBinaryIterator::putValue;
    using QelBinaryIterator::putValueBase64;
    using QelBinaryIterator::putValueDouble;
    using QelBinaryIterator::putValueLongLong;
    using QelBinaryIterator::putValueTime;
    using QelBinaryIterator::putValueTimeZone;
    using QelBinaryIterator::seek;
    using QelBinaryIterator::seekPresence;

    int seek(int id) const override {
        return run(Operation::find, id, [&] { return QelBinaryIterator::seek(id); });
    }
    int seekPresence(int id) const override {
        return run(Operation::find, id, [&] { return QelBinaryIterator::seekPresence(id); });
    }
    int firstChild(int id) const override {
        return run(Operation::find, id, [&] { return QelBinaryIterator::firstChild(id); });
    }

    int getValue(std::string& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValue(value, id); });
    }
    int getValue(int& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValue(value, id); });
    }
    int getValue(bool& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValue(value, id); });
    }
    int getValueBase64(std::string& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValueBase64(value, id); });
    }
    int getValueLongLong(long long& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValueLongLong(value, id); });
    }
    int getValueDouble(double& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValueDouble(value, id); });
    }
    int getValueTime(long& value, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValueTime(value, id); });
    }
    int getValueTimeZone(long& value, int& zone, int id) const override {
        return run(Operation::get, id, [&] { return QelBinaryIterator::getValueTimeZone(value, zone, id); });
    }

    int putValue(const std::string& value, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValue(value, id); });
    }
    int putValue(const char* data, int len, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValue(data, len, id); });
    }
    int putValue(int value, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValue(value, id); });
    }
    int putValueBase64(const std::string& value, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValueBase64(value, id); });
    }
    int putValueBase64(const char* data, int len, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValueBase64(data, len, id); });
    }
    int putValueLongLong(long long value, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValueLongLong(value, id); });
    }
    int putValueDouble(double value, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValueDouble(value, id); });
    }
    int putValueTime(long value, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValueTime(value, id); });
    }
    int putValueTimeZone(long value, int zone, int id) override {
        return run(Operation::put, id, [&] { return QelBinaryIterator::putValueTimeZone(value, zone, id); });
    }

    int putChild(int id) override {
        return run(Operation::add, id, [&] { return QelBinaryIterator::putChild(id); });
    }
    int copyToChild(const QelMessageIterator* from) override {
        return run(Operation::add, 0, [&] { return QelBinaryIterator::copyToChild(from); });
    }

private:
    template <class Execute> int run(Operation operation, int id, const Execute& execute) const {
        Call call{operation, id, pathOf(*this)};
        if (id != 0)
            call.path.push_back(id);
        const std::optional<int> result = m_script(call);
        if (!result)
            return execute();
        ++m_replacedCalls;
        return *result;
    }

    Script m_script;
    mutable int m_replacedCalls = 0;
};

/// Replaces an operation on elements with one of these IDs, at any depth, with `result`. An empty list of IDs means all
/// elements.
[[nodiscard]] inline ScriptedCursor::Script fails(ScriptedCursor::Operation operation, std::vector<int> elements = {},
                                                  int result = -1) {
    return [operation, elements = std::move(elements), result](const ScriptedCursor::Call& call) {
        const bool isAffected =
            call.operation == operation &&
            (elements.empty() ||
             (!call.path.empty() && std::find(elements.begin(), elements.end(), call.path.back()) != elements.end()));
        return isAffected ? std::optional(result) : std::nullopt;
    };
}

/// Fails these operations on the element at path `top` and its descendants.
[[nodiscard]] inline ScriptedCursor::Script failsBelow(std::vector<ScriptedCursor::Operation> operations,
                                                       ElementPath top) {
    return [operations = std::move(operations), top = std::move(top)](const ScriptedCursor::Call& call) {
        const bool isAffected = std::find(operations.begin(), operations.end(), call.operation) != operations.end() &&
                                call.path.size() >= top.size() && std::equal(top.begin(), top.end(), call.path.begin());
        return isAffected ? std::optional(-1) : std::nullopt;
    };
}

/// Writes a record to a cursor that accepts elements but rejects all values.  Returns the result.
template <class Record> int writeWithoutValues(const Record& record) {
    const TestMessage message;
    return ScriptedCursor(message.cursor(), fails(ScriptedCursor::Operation::put)).putObj(record, 0);
}

/// The IDs of the children of the root that a reader accesses, without repetitions, in the order of first access.
template <class Record> std::vector<int> readingOrderIn(const TestMessage& message) {
    std::vector<int> accessed;
    const ScriptedCursor cursor(message.cursor(), [&](const ScriptedCursor::Call& call) -> std::optional<int> {
        const bool isChildOfRoot = call.id != 0 && call.path.size() == 1;
        if (isChildOfRoot && std::find(accessed.begin(), accessed.end(), call.id) == accessed.end())
            accessed.push_back(call.id);
        return std::nullopt;
    });
    Record read;
    static_cast<void>(cursor.getObj(read, 0));
    return accessed;
}

/// The IDs of the children that the reader of `written` accesses, for a message that contains this record.
template <class Record> std::vector<int> readingOrderOf(const Record& written) {
    const TestMessage message;
    message->setTime(1);
    static_cast<void>(message.cursor().putObj(written, 0));
    return readingOrderIn<Record>(message);
}

} // namespace Qel::TestSupport
