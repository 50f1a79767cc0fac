#pragma once

#include <string>
#include <typeinfo>

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

/// Returns whether the dynamic type of the object is exactly `Class`.
template <class Class, class Base> bool isExactly(const Base& object) {
    return typeid(object) == typeid(Class);
}

using TestSupport::childIDs;

/// Fixture for network records, with helpers that write single elements.
class NetworkRecordTest : public TestSupport::RecordTest {
protected:
    /// Adds a new, empty record element and moves the cursor to it.
    void newElement() {
        message.seekRoot();
        message.newChild(recordElement);
    }

    [[nodiscard]] std::string value(int id) const { return TestSupport::childValue(message, id); }
    /// Returns the value of child `id` of child `parent`.
    [[nodiscard]] std::string valueIn(int parent, int id) const {
        EXPECT_EQ(message.seek(parent), 0);
        std::string text = value(id);
        message.seekUp();
        return text;
    }
    void put(int id, const std::string& text) { message.putValue(text, id); }
    /// Adds a child that has one child.
    void putIn(int parent, int id, const std::string& text) {
        message.newChild(parent);
        put(id, text);
        message.seekUp();
    }
};

} // namespace Qel
