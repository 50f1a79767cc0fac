#pragma once

#include <string>
#include <typeinfo>

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

/// Whether the object is of just this class.
template <class Class, class Base> bool isExactly(const Base& object) {
    return typeid(object) == typeid(Class);
}

using TestSupport::childIDs;

/// A test of a network record, which puts many elements by hand.
class NetworkRecordTest : public TestSupport::RecordTest {
protected:
    /// Goes to a new, empty element.
    void startAnew() {
        message.seekRoot();
        message.newChild(recordElement);
    }

    [[nodiscard]] std::string value(int id) const { return TestSupport::childValue(message, id); }
    /// The value of child `id` of child `parent`.
    [[nodiscard]] std::string valueIn(int parent, int id) const {
        EXPECT_EQ(message.seek(parent), 0);
        std::string text = value(id);
        message.seekUp();
        return text;
    }
    void put(int id, const std::string& text) { message.putValue(text, id); }
    /// Adds a child with one child of its own.
    void putIn(int parent, int id, const std::string& text) {
        message.newChild(parent);
        put(id, text);
        message.seekUp();
    }
};

} // namespace Qel
