#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "support/TestMessage.h"

namespace Qel::TestSupport {

/// A fixture with an element to write a record to.
class RecordTest : public testing::Test {
protected:
    RecordTest() { message.newChild(recordElement); }

    template <class Record> int write(const Record& record) { return typename Record::writer_type()(message, record); }
    template <class Record> int read(Record& record) { return typename Record::reader_type()(message, record); }
    template <class Record> Record roundTrip(const Record& record) {
        EXPECT_EQ(write(record), 0) << getErrorMessage();
        Record back;
        EXPECT_EQ(read(back), 0) << getErrorMessage();
        EXPECT_EQ(message.curID(), recordElement) << "the reader restores the position";
        return back;
    }

    /// The complex type of a written record.
    template <class Record> std::string typeOf(const Record& record) {
        EXPECT_EQ(message.putObj(record, 0), 0);
        return message.curType();
    }

    /// Replaces all children with an ID by one with this value.
    void replace(int id, const std::string& value) {
        remove(id);
        message.putValue(value, id);
    }
    void remove(int id) {
        while (message.deleteChild(id) == 0) {
        }
    }
    /// Removes all children of the record's element.
    void clear() {
        while (message.firstChild() == 0)
            message.deleteFromChild();
    }

    /// The IDs of the children of a child, which must exist.
    [[nodiscard]] std::vector<int> childrenIn(int id) const {
        if (message.seek(id) != 0) {
            ADD_FAILURE() << "no element " << id;
            return {};
        }
        std::vector<int> ids = childIDs(message);
        message.seekUp();
        return ids;
    }

    static constexpr int recordElement = 1021;
    TestMessage tree;
    QelMessageIterator& message = tree.cursor();
};

} // namespace Qel::TestSupport
