#include "QelFunctionalityCore/Profile/QelBrowseSettings.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "ProfileSamples.h"
#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/RequiredChildren.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(QelBrowseColumnTest, MissingOptionalFieldsAreUnchanged) {
    TestTree tree;
    tree->putValue("cpu", 2213);
    QelBrowseColumn column;
    column.text = "heading";
    column.flag2206 = true;
    column.value2214 = 7;
    EXPECT_EQ(tree->getObj(column, 0), 0);
    EXPECT_EQ(column.name, "cpu");
    EXPECT_TRUE(column.flag2206);
    EXPECT_EQ(column.value2214, 7);
    EXPECT_EQ(column.text, "heading");
}

TEST(QelBrowseColumnTest, RejectsMalformedFields) {
    for (const int id : {2206, 2214}) {
        TestTree tree;
        tree->putValue("cpu", 2213);
        tree->putValue("wide", id);
        QelBrowseColumn column;
        EXPECT_EQ(tree->getObj(column, 0), -1) << id;
    }
}

TEST(QelBrowseColumnTest, TextAndLocalIDAreCopiedButNotSent) {
    QelBrowseColumn column;
    column.text = "heading";
    column.localID = 5;
    const QelBrowseColumn copy = column;
    EXPECT_EQ(copy.text, "heading");
    EXPECT_EQ(copy.localID, 5);
    TestTree tree;
    ASSERT_EQ(tree->putObj(column, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2213, 2206, 2214));
    QelBrowseColumn read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.text, "");
    EXPECT_EQ(read.localID, 0);
}

TEST(QelBrowseInfoTest, ConstructedFromNameHasNoLocalID) {
    const QelBrowseInfo info("machines");
    EXPECT_EQ(info.name, "machines");
    EXPECT_EQ(info.localID, -1);
    EXPECT_EQ(QelBrowseInfo().localID, 0);
}

TEST(QelBrowseInfoTest, EmptyColumnListsAreEmptyElements) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(browseInfo("machines"), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2209, 2210, 2216, 2215, 2211));
    QelBrowseInfo read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.name, "machines");
    EXPECT_THAT(read.columns2216, IsEmpty());
    EXPECT_THAT(read.columns2215, IsEmpty());
    EXPECT_THAT(read.columns2211, IsEmpty());
}

TEST(QelBrowseInfoTest, RequiresEveryElement) {
    TestSupport::expectRequired(browseInfo("machines"), {2209, 2210, 2216, 2215, 2211});
}

TEST(QelBrowseInfoTest, FilterWritesNameOnly) {
    TestTree tree;
    ASSERT_EQ(tree->putObject(browseInfo("machines", 9), QelBrowseInfo::filterWriter(), 2200), 0);
    ASSERT_EQ(tree->seek(2200), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2209));
    tree->putValue(9, 2210);
    QelBrowseInfo read;
    EXPECT_EQ(tree->getObject(read, QelBrowseInfo::filterReader(), 0), 0);
    EXPECT_EQ(read.name, "machines");
    EXPECT_EQ(read.value2210, 0);
}

TEST(QelBrowseInfoTest, FilterRejectsMissingName) {
    TestTree tree;
    QelBrowseInfo read("old");
    EXPECT_EQ(tree->getObject(read, QelBrowseInfo::filterReader(), 0), -1);
    EXPECT_EQ(read.name, "old");
    EXPECT_THAT(getErrorMessage(), HasSubstr("browse_name is missing"));
}

TEST(QelBrowseSettingsTest, OrdersByNameAndKeepsFirstDuplicate) {
    TestTree tree;
    for (const auto& info : {browseInfo("b", 1), browseInfo("a", 2), browseInfo("b", 3)}) {
        tree->newChild(2200);
        ASSERT_EQ(tree->putObj(info, 0), 0);
        tree->seekUp();
    }
    QelBrowseSettings read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_THAT(namesOf(read), ElementsAre("a", "b"));
    EXPECT_EQ(read.items.rbegin()->value2210, 1);
}

TEST(QelBrowseSettingsTest, AcceptsNoItems) {
    TestTree tree;
    QelBrowseSettings read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_THAT(read.items, IsEmpty());
}

/// A message with lists of these names in its root.
class QelBrowseFilterTest : public testing::Test {
protected:
    void putLists(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            tree->putObject(browseInfo(name, 1), QelWriterID(QelBrowseInfo::Writer(), 2200), 0);
    }
    static boost::shared_ptr<QelBrowseSettings> filter(const std::vector<std::string>& names) {
        return boost::make_shared<QelBrowseSettings>(settingsOf<QelBrowseSettings>(names));
    }
    template <class Reader> int read(const boost::shared_ptr<QelBrowseSettings>& names) {
        return tree->getObject(settings, Reader(names), 0);
    }
    int readDifference(const std::vector<std::string>& names) {
        return read<QelBrowseSettings::differenceReader>(filter(names));
    }
    int readIntersection(const std::vector<std::string>& names) {
        return read<QelBrowseSettings::intersectionReader>(filter(names));
    }

    TestTree tree;
    QelBrowseSettings settings;
};

TEST_F(QelBrowseFilterTest, IntersectionSelectsListsNamedInFilter) {
    putLists({"a", "b"});
    EXPECT_EQ(readIntersection({"a", "c"}), 0);
    EXPECT_THAT(namesOf(settings), ElementsAre("a"));
    EXPECT_EQ(settings.items.begin()->value2210, 1) << "as a whole";
}

TEST_F(QelBrowseFilterTest, DifferenceSelectsOtherLists) {
    putLists({"a", "b", "d"});
    EXPECT_EQ(readDifference({"a", "c"}), 0);
    EXPECT_THAT(namesOf(settings), ElementsAre("b", "d"));
}

TEST_F(QelBrowseFilterTest, EmptyFilterReadsAllAndRestoresCursor) {
    putLists({"a", "b"});
    for (const auto& none : {boost::shared_ptr<QelBrowseSettings>(), filter({})}) {
        settings.items.clear();
        EXPECT_EQ(read<QelBrowseSettings::differenceReader>(none), 0);
        EXPECT_THAT(namesOf(settings), ElementsAre("a", "b"));
        settings.items.clear();
        EXPECT_EQ(read<QelBrowseSettings::intersectionReader>(none), 0);
        EXPECT_THAT(namesOf(settings), ElementsAre("a", "b"));
        EXPECT_EQ(tree->curName(), "/");
    }
}

TEST_F(QelBrowseFilterTest, FilteredReadLeavesCursorAtLastList) {
    putLists({"a", "b"});
    tree->putValue("other", 1026);
    EXPECT_EQ(readIntersection({"a"}), 0);
    EXPECT_EQ(tree->curID(), 2200);
    EXPECT_EQ(childValue(*tree, 2209), "b");
    EXPECT_NE(tree->nextSibling(2200), 0);
    tree->seekUp();
    EXPECT_EQ(tree->curName(), "/");
}

TEST_F(QelBrowseFilterTest, FilteredReadWithoutListsKeepsCursor) {
    tree->putValue("other", 1026);
    settings = *filter({"old"});
    EXPECT_EQ(readIntersection({"a"}), 0);
    EXPECT_EQ(readDifference({"a"}), 0);
    EXPECT_THAT(namesOf(settings), ElementsAre("old"));
    EXPECT_EQ(tree->curName(), "/");
}

TEST_F(QelBrowseFilterTest, EmptyNameFailsAndKeepsEarlierLists) {
    putLists({"a", "", "c"});
    EXPECT_EQ(readIntersection({"a", "c"}), -1);
    EXPECT_THAT(namesOf(settings), ElementsAre("a"));
    EXPECT_THAT(getErrorMessage(), HasSubstr("browse_info: its name is empty"));
    EXPECT_EQ(tree->curID(), 2200);
    EXPECT_EQ(childValue(*tree, 2209), "") << "the cursor stays at the item";
    EXPECT_EQ(tree->nextSibling(2200), 0);
}

TEST_F(QelBrowseFilterTest, MissingNameFailsAndKeepsEarlierLists) {
    putLists({"x"});
    tree->putChild(2200);
    putLists({"y"});
    EXPECT_EQ(readDifference({"a"}), -1);
    EXPECT_THAT(namesOf(settings), ElementsAre("x"));
    EXPECT_THAT(getErrorMessage(), HasSubstr("browse_info: element browse_name is missing"));
}

TEST_F(QelBrowseFilterTest, PartlyMalformedListIsKept) {
    tree->newChild(2200);
    tree->putValue("a", 2209);
    tree->putValue(3, 2210);
    tree->putChild(2216);
    tree->seekUp();
    putLists({"b"});
    EXPECT_EQ(readIntersection({"a", "b"}), 0);
    EXPECT_THAT(namesOf(settings), ElementsAre("a", "b"));
    EXPECT_EQ(settings.items.begin()->value2210, 3);
}

TEST_F(QelBrowseFilterTest, ExistingListIsNotReplaced) {
    settings.items = {browseInfo("a", 99)};
    putLists({"a"});
    EXPECT_EQ(readIntersection({"a"}), 0);
    EXPECT_EQ(settings.items.begin()->value2210, 99);
}

TEST_F(QelBrowseFilterTest, FilteringReaderIsCopyable) {
    putLists({"a", "b"});
    const QelBrowseSettings::intersectionReader reader(filter({"b"}));
    const QelBrowseSettings::intersectionReader copy = reader;
    EXPECT_EQ(tree->getObject(settings, copy, 0), 0);
    EXPECT_THAT(namesOf(settings), ElementsAre("b"));
}

} // namespace

} // namespace Qel
