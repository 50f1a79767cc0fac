#include "QelFunctionalityCore/Network/QelRowSet.h"

#include "QelFunctionalityCore/Network/NetworkRecordTest.h"
#include "QelFunctionalityCore/Network/QelPagerSortCondition.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

template <class Cell> Cell cell(const std::string& value, const std::vector<Cell>& children = {}) {
    Cell made;
    made.value = value;
    made.children = children;
    return made;
}
constexpr auto column = &cell<QelRowSet::Column>;
constexpr auto text = &cell<QelRowSet::Cell>;

class QelRowSetTest : public NetworkRecordTest {
protected:
    void putColumn(const std::string& name) { putIn(1082, 1026, name); }
    /// Adds a row with one cell per string.
    void putRow(const std::vector<std::string>& texts) {
        message.newChild(1739);
        for (const std::string& each : texts)
            putIn(1082, 1018, each);
        message.seekUp();
    }
};

TEST_F(QelRowSetTest, RoundTripsColumnsRowsAndNumbers) {
    QelRowSet set;
    set.columns = {column("name", {}), column("", {column("free", {}), column("total", {})})};
    set.rows = {{text("a", {}), text("", {text("1", {}), text("2", {})})}, {text("b", {})}};
    set.count = 2;
    set.value1040 = 0;
    const QelRowSet back = roundTrip(set);
    EXPECT_EQ(back.columns, set.columns);
    EXPECT_EQ(back.rows, set.rows);
    EXPECT_EQ(back.count, 2);
    EXPECT_EQ(back.value1040, 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1082, 1082, 1739, 1739, 1259, 1040));
    EXPECT_EQ(valueIn(1082, 1026), "name");
    ASSERT_EQ(message.seek(1739), 0);
    EXPECT_EQ(valueIn(1082, 1018), "YQ==");
    message.seekUp();
}

TEST_F(QelRowSetTest, OmitsUnknownNumberAndReadsItAsUnknown) {
    QelRowSet set;
    set.columns = {column("name", {})};
    EXPECT_EQ(set.count, 2147483647);
    EXPECT_EQ(write(set), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1082));
    set.count = set.value1040 = 5;
    EXPECT_EQ(read(set), 0);
    EXPECT_EQ(set.count, 2147483647);
    EXPECT_EQ(set.value1040, 2147483647);
    put(1259, "many");
    set.count = 5;
    EXPECT_EQ(read(set), 0);
    EXPECT_EQ(set.count, 2147483647) << "malformed number";
}

TEST_F(QelRowSetTest, RequiresColumns) {
    putRow({"YQ=="});
    put(1259, "1");
    QelRowSet set;
    EXPECT_EQ(read(set), -1);
    EXPECT_THAT(set.rows, IsEmpty());
}

TEST_F(QelRowSetTest, EmptyRowEndsRows) {
    putColumn("name");
    putRow({"YQ=="});
    putRow({});
    putRow({"Yg=="});
    put(1259, "3");
    QelRowSet set;
    EXPECT_EQ(read(set), 0);
    EXPECT_THAT(set.rows, ElementsAre(ElementsAre(text("a", {}))));
    EXPECT_EQ(set.count, 3) << "later fields are read";
}

TEST_F(QelRowSetTest, ChildrenOfNamedColumnAreIgnored) {
    message.newChild(1082);
    put(1026, "name");
    putColumn("child");
    message.seekUp();
    QelRowSet set;
    EXPECT_EQ(read(set), 0);
    EXPECT_THAT(set.columns, ElementsAre(column("name", {})));

    set.columns = {column("name", {column("child", {})})};
    newElement();
    EXPECT_EQ(write(set), 0);
    EXPECT_THAT(childrenIn(1082), ElementsAre(1026));
}

TEST_F(QelRowSetTest, EmptyCellIsEmptyElement) {
    QelRowSet set;
    set.columns = {column("", {})};
    EXPECT_EQ(roundTrip(set).columns, set.columns);
    EXPECT_THAT(childrenIn(1082), IsEmpty());
}

TEST_F(QelRowSetTest, MissingStringClearsValue) {
    QelRowSet::Column cell = column("before", {});
    putColumn("child");
    EXPECT_EQ(read(cell), 0);
    EXPECT_EQ(cell, column("", {column("child", {})}));
}

TEST_F(QelRowSetTest, MalformedValueReadsChildrenLikeMissingOne) {
    put(1018, "?");
    putIn(1082, 1018, "YQ==");
    QelRowSet::Cell cell = text("before", {});
    EXPECT_EQ(read(cell), 0);
    EXPECT_EQ(cell, text("", {text("a", {})}));
    putIn(1082, 1018, "?");
    cell.children.clear();
    EXPECT_EQ(read(cell), 0) << "malformed value in a child";
    EXPECT_EQ(cell, text("", {text("a", {}), text("", {})}));
}

using QelPagerSortConditionTest = NetworkRecordTest;

TEST_F(QelPagerSortConditionTest, DescendingOrderIsWrittenAsFlag) {
    QelPagerSortCondition condition;
    condition.column = "name";
    condition.descending = true;
    const QelPagerSortCondition back = roundTrip(condition);
    EXPECT_EQ(back.column, "name");
    EXPECT_TRUE(back.descending);
    EXPECT_THAT(childIDs(message), ElementsAre(1741, 1378));
    EXPECT_EQ(value(1378), "");
}

TEST_F(QelPagerSortConditionTest, AscendingOrderIsNotWritten) {
    EXPECT_EQ(write(QelPagerSortCondition()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1741));
}

TEST_F(QelPagerSortConditionTest, OrderIsReadAsValue) {
    QelPagerSortCondition condition;
    condition.descending = true;
    put(1741, "name");
    EXPECT_EQ(read(condition), 0);
    EXPECT_TRUE(condition.descending) << "a missing one leaves it unchanged";
    put(1378, "0");
    EXPECT_EQ(read(condition), 0);
    EXPECT_FALSE(condition.descending);
    message.deleteChild(1378);
    put(1378, "perhaps");
    EXPECT_EQ(read(condition), 0);
    EXPECT_FALSE(condition.descending) << "so does a malformed one";
}

TEST_F(QelPagerSortConditionTest, RequiresColumn) {
    message.putChild(1378);
    QelPagerSortCondition condition;
    EXPECT_EQ(read(condition), -1);
    EXPECT_FALSE(condition.descending);
}

} // namespace
} // namespace Qel
