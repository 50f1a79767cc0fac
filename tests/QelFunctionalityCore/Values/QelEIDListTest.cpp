#include "QelFunctionalityCore/Values/QelEIDList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {
namespace {

using testing::ElementsAre;

constexpr int eidElement = 1866;

TEST(QelEIDListTest, WritesItemsAsChildrenInOrder) {
    TestTree tree;
    EXPECT_EQ(tree->putObject(QelEIDList({{2, 0}, {1, 0}}), QelEIDList::Writer(), 0), 0);
    EXPECT_EQ(countChildren(*tree, eidElement), 2);
    EXPECT_EQ(childValue(*tree, eidElement), QelEID(1, 0).toString());
    EXPECT_EQ(tree->curName(), "/");
}

TEST(QelEIDListTest, WritesItemsInNamespace292) {
    TestTree tree;
    ASSERT_EQ(tree->putObject(QelEIDList({{2, 0}, {1, 0}}), QelEIDList::Writer(), 0), 0);
    ASSERT_EQ(tree->firstChild(eidElement), 0);
    EXPECT_EQ(tree->curNamespaceID(), 292);
    ASSERT_EQ(tree->nextSibling(eidElement), 0);
    EXPECT_EQ(tree->curNamespaceID(), 292);
}

TEST(QelEIDListTest, RoundTrips) {
    const QelEIDList list({{3, 1}, {1, 0}, {-2, 5}});
    TestTree tree;
    ASSERT_EQ(tree->putObj(list, 1899), 0);
    QelEIDList read;
    EXPECT_EQ(tree->getObj(read, 1899), 0);
    EXPECT_EQ(read, list);
}

TEST(QelEIDListTest, EmptyListWritesNothingAndReadsBack) {
    TestTree tree;
    EXPECT_EQ(tree->putObject(QelEIDList(), QelEIDList::Writer(), 0), 0);
    EXPECT_EQ(countChildren(*tree), 0);
    QelEIDList read({{1, 0}});
    EXPECT_EQ(QelEIDList::Reader()(*tree, read), 0);
    EXPECT_THAT(read, ElementsAre(QelEID(1, 0)));
}

TEST(QelEIDListTest, DropsDuplicates) {
    TestTree tree;
    for (int i = 0; i < 2; ++i)
        tree->putValue(QelEID(1, 0).toString(), eidElement);
    QelEIDList read;
    EXPECT_EQ(QelEIDList::Reader()(*tree, read), 0);
    EXPECT_THAT(read, ElementsAre(QelEID(1, 0)));
}

TEST(QelEIDListTest, MalformedItemStopsReadAndKeepsPrecedingItems) {
    TestTree tree;
    tree->putValue(QelEID(1, 0).toString(), eidElement);
    tree->putValue(std::string("bad"), eidElement);
    tree->putValue(QelEID(2, 0).toString(), eidElement);
    QelEIDList read;
    EXPECT_EQ(QelEIDList::Reader()(*tree, read), -1);
    EXPECT_THAT(read, ElementsAre(QelEID(1, 0)));
    EXPECT_EQ(tree->curName(), "/");
}

} // namespace
} // namespace Qel
