#include "QelMessage/QelBinaryIterator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/support/TestMessage.h"

namespace Qel {
namespace {

using TestSupport::TestMessage;

constexpr int name = 1026;
constexpr int data = 1307;
constexpr int flag = 1646;
constexpr int envNamespace = 292;

TEST(QelBinaryIteratorTest, ANewMessageHasOnlyItsRoot) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().curName(), "/");
    EXPECT_EQ(message.cursor().curID(), 0);
    EXPECT_NE(message.cursor().firstChild(), 0);
}

TEST(QelBinaryIteratorTest, APutAppendsAChildAndAGetReadsTheFirst) {
    const TestMessage message;
    QelMessageIterator& cursor = message.cursor();
    EXPECT_EQ(cursor.putValue(std::string("one"), name), 0);
    EXPECT_EQ(cursor.putValue(std::string("two"), name), 0);
    std::string value;
    EXPECT_EQ(cursor.getValue(value, name), 0);
    EXPECT_EQ(value, "one");
    EXPECT_EQ(cursor.curName(), "/");
    ASSERT_EQ(cursor.firstChild(name), 0);
    ASSERT_EQ(cursor.nextSibling(name), 0);
    EXPECT_EQ(cursor.getValue(value, 0), 0);
    EXPECT_EQ(value, "two");
    EXPECT_NE(cursor.nextSibling(name), 0);
    EXPECT_EQ(cursor.getValue(value, 0), 0);
    EXPECT_EQ(value, "two");
}

TEST(QelBinaryIteratorTest, AFlattenedElementComesBackBelowTheRoot) {
    const TestMessage message;
    QelMessageIterator& cursor = message.cursor();
    ASSERT_EQ(cursor.newChild(data), 0);
    cursor.setNamespace(envNamespace);
    cursor.putChild(flag);
    cursor.putValue(7, std::string("log_level"));
    const std::string bytes = TestSupport::flattened(cursor);

    const TestMessage copy(QelMessage::getFactory()->createNew(bytes.data(), static_cast<int>(bytes.size())));
    ASSERT_EQ(copy.cursor().seek("/data/log_level"), 0);
    int level = 0;
    EXPECT_EQ(copy.cursor().getValue(level, 0), 0);
    EXPECT_EQ(level, 7);
}

} // namespace
} // namespace Qel
