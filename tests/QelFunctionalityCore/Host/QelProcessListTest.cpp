#include "QelFunctionalityCore/Host/QelProcessList.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

constexpr int rowElement = 1080;
constexpr int pidElement = 1081;
constexpr int valueElement = 1082;
constexpr int nameElement = 1083;

using Params = std::map<std::string, std::string>;

QelProcessInfo row(int pid, const Params& params) {
    QelProcessInfo made;
    made.pid = pid;
    made.params = params;
    return made;
}

QelProcessList listOf(const std::vector<QelProcessInfo>& rows) {
    QelProcessList list;
    list.rows = rows;
    return list;
}

std::vector<std::string> namesIn(const QelMessageIterator& cursor) {
    std::vector<std::string> names;
    if (cursor.firstChild(nameElement) != 0)
        return names;
    do {
        names.emplace_back();
        cursor.getValue(names.back(), 0);
    } while (cursor.nextSibling(nameElement) == 0);
    cursor.seekUp();
    return names;
}

TEST(QelProcessListTest, EmptyListWritesOneEmptyNameAndCounters) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelProcessList(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(nameElement, 1035, 1036, 1037, 1038, 1039, 1046, 1040));
    EXPECT_EQ(childValue(message.cursor(), nameElement), "");
    QelProcessList read;
    read.paramNames = {"left over"};
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.paramNames, IsEmpty());
    EXPECT_THAT(read.rows, IsEmpty());
}

TEST(QelProcessListTest, WritesNamesOnceAndValuesPerRow) {
    QelProcessList list =
        listOf({row(1, {{"user", "root"}, {"command", "init"}}), row(7, {{"user", ""}, {"command", "sh"}})});
    list.running = 1;
    list.total = 2;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(list, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(rowElement, rowElement, nameElement, nameElement, 1035, 1036,
                                                        1037, 1038, 1039, 1046, 1040));
    EXPECT_THAT(namesIn(message.cursor()), ElementsAre("command", "user"));
    ASSERT_EQ(message.cursor().seek(rowElement), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(pidElement, valueElement, valueElement));
    EXPECT_EQ(childValue(message.cursor(), valueElement), "init");
    message.cursor().seekUp();

    QelProcessList read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    ASSERT_EQ(read.rows.size(), 2U);
    EXPECT_EQ(read.rows[1].pid, 7);
    EXPECT_THAT(read.rows[0].params, ElementsAre(Pair("command", "init"), Pair("user", "root")));
    EXPECT_THAT(read.rows[1].params, ElementsAre(Pair("command", "sh"), Pair("user", "")));
    EXPECT_THAT(read.paramNames, ElementsAre("command", "user"));
    EXPECT_EQ(read.running, 1);
    EXPECT_EQ(read.total, 2);
}

TEST(QelProcessListTest, WriterRejectsRowWithOtherColumnCount) {
    for (const Params& other : {Params{{"a", "1"}, {"b", "2"}}, Params{}}) {
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(listOf({row(1, {{"a", "0"}}), row(2, other)}), 0), -1);
        EXPECT_EQ(countChildren(message.cursor(), nameElement), 0);
        EXPECT_EQ(countChildren(message.cursor(), rowElement), 2);
        EXPECT_THAT(getErrorMessage(), HasSubstr("cannot write QelProcessList: element process (rows) was rejected"));
    }
}

TEST(QelProcessListTest, WriterRejectsRowWithOtherColumnName) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(listOf({row(1, {{"a", "0"}}), row(2, {{"b", "0"}})}), 0), -1);
}

TEST(QelProcessListTest, FirstRowWithColumnsDeterminesColumns) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(listOf({row(1, {}), row(2, {{"a", "0"}}), row(3, {{"a", "1"}})}), 0), 0);
    EXPECT_THAT(namesIn(message.cursor()), ElementsAre("a"));
}

TEST(QelProcessListTest, EmptyNameIsReplacedByLaterRow) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(listOf({row(1, {{"", "x"}}), row(2, {{"a", "y"}})}), 0), 0);
    EXPECT_THAT(namesIn(message.cursor()), ElementsAre("a"));
    EXPECT_EQ(message.cursor().putObj(listOf({row(1, {{"", "x"}}), row(2, {{"a", "y"}}), row(3, {{"b", "z"}})}), 0),
              -1);
}

class QelProcessListReaderTest : public testing::Test {
protected:
    void addRow(int pid, int values) const {
        cursor().newChild(rowElement);
        cursor().putValue(pid, pidElement);
        for (int i = 0; i < values; ++i)
            cursor().putValue(i, valueElement);
        cursor().seekUp();
    }
    [[nodiscard]] QelMessageIterator& cursor() const { return message.cursor(); }

    TestMessage message;
    QelProcessList read;
};

TEST_F(QelProcessListReaderTest, MissingNamesAreRejectedBeforeCountersAreRead) {
    cursor().putValue(5, 1035);
    EXPECT_EQ(cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.running, 0);
}

TEST_F(QelProcessListReaderTest, IgnoresMissingOrMalformedCounters) {
    cursor().putValue("a", nameElement);
    cursor().putValue("many", 1035);
    EXPECT_EQ(cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.running, 0);
}

TEST_F(QelProcessListReaderTest, RejectsRowWithMoreValuesThanNames) {
    cursor().putValue("a", nameElement);
    cursor().putValue(3, 1040);
    addRow(1, 1);
    addRow(2, 2);
    addRow(3, 1);
    EXPECT_EQ(cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.rows.size(), 1U);
    EXPECT_EQ(read.total, 3) << "rows are read last";
}

TEST_F(QelProcessListReaderTest, RowWithFewerValuesFillsFirstColumns) {
    cursor().putValue("b", nameElement);
    cursor().putValue("a", nameElement);
    addRow(1, 1);
    EXPECT_EQ(cursor().getObj(read, 0), 0);
    ASSERT_EQ(read.rows.size(), 1U);
    EXPECT_THAT(read.rows[0].params, ElementsAre(Pair("b", "0")));
}

TEST_F(QelProcessListReaderTest, RowRequiresPid) {
    cursor().putValue("a", nameElement);
    cursor().putChild(rowElement);
    EXPECT_EQ(cursor().getObj(read, 0), -1);
}

} // namespace
} // namespace Qel
