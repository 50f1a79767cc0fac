#pragma once

#include <string>
#include <typeinfo>
#include <vector>

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

/// Whether the object is of just this class.
template <class Class, class Base> bool isExactly(const Base& object) {
    return typeid(object) == typeid(Class);
}

/// A record that is written to, and read from, an element of its own.
class NetworkRecordTest : public testing::Test {
protected:
    NetworkRecordTest() { startAnew(); }

    /// Goes to a new, empty element.
    void startAnew() {
        message.seekRoot();
        message.newChild(1021);
    }

    template <class Record> int write(const Record& record) { return typename Record::writer_type()(message, record); }
    template <class Record> int read(Record& record) { return typename Record::reader_type()(message, record); }
    template <class Record> Record roundTrip(const Record& record) {
        EXPECT_EQ(write(record), 0) << getErrorMessage();
        Record back;
        EXPECT_EQ(read(back), 0) << getErrorMessage();
        EXPECT_EQ(message.curID(), 1021) << "the cursor comes back";
        return back;
    }

    /// The IDs of the element's children.
    [[nodiscard]] std::vector<int> children() const {
        std::vector<int> ids;
        if (message.firstChild() != 0)
            return ids;
        do
            ids.push_back(message.curID());
        while (message.nextSibling() == 0);
        message.seekUp();
        return ids;
    }
    /// The same of the first child `id`.
    [[nodiscard]] std::vector<int> childrenIn(int id) const {
        EXPECT_EQ(message.seek(id), 0);
        std::vector<int> ids = children();
        message.seekUp();
        return ids;
    }
    [[nodiscard]] std::string value(int id) const { return valueOf(message, id); }
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

private:
    TestTree m_tree;

protected:
    QelMessageIterator& message = *m_tree;
};

} // namespace Qel
