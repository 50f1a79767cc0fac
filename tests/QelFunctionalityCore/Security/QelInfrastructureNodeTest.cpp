#include "QelFunctionalityCore/Security/QelInfrastructureNode.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;

QelInfrastructureFolderAttributes folder() {
    QelInfrastructureFolderAttributes made;
    made.name = "servers";
    made.type = 3;
    made.description = "all of them";
    return made;
}

QelInfrastructureNode node() {
    QelInfrastructureNode made;
    made.nodeID = QelGUID(1, 2);
    made.parentID = QelGUID(3, 4);
    made.folder = folder();
    return made;
}

TEST(QelInfrastructureFolderAttributesTest, ReaderAcceptsTypesFromOneToFive) {
    for (const int type : {-1, 0, 1, 5, 6}) {
        TestTree tree;
        QelInfrastructureFolderAttributes written = folder();
        written.type = type;
        ASSERT_EQ(tree->putObj(written, 0), 0);
        QelInfrastructureFolderAttributes back;
        back.type = 2;
        const bool valid = type >= 1 && type <= 5;
        EXPECT_EQ(tree->getObj(back, 0), valid ? 0 : -1) << type;
        EXPECT_EQ(back.type, valid ? type : 2) << "a rejected type leaves the field unchanged";
        EXPECT_EQ(back.name, "servers");
        EXPECT_EQ(back.description.isSpecified(), valid);
    }
}

TEST(QelInfrastructureFolderAttributesTest, RequiresNameAndTypeButNotDescription) {
    for (const int id : {1026, 1007, 1496}) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(folder(), 0), 0);
        EXPECT_THAT(childIDs(*tree), ElementsAre(1026, 1007, 1496));
        tree->deleteChild(id);
        QelInfrastructureFolderAttributes back;
        EXPECT_EQ(tree->getObj(back, 0), id == 1496 ? 0 : -1);
        EXPECT_FALSE(back.description.isSpecified());
    }
}

TEST(QelInfrastructureNodeTest, OmitsUnspecifiedFolder) {
    TestTree tree;
    QelInfrastructureNode written = node();
    written.folder.specify(false);
    ASSERT_EQ(tree->putObj(written, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1010, 2241));
    QelInfrastructureNode back = node();
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_FALSE(back.folder.isSpecified());
}

TEST(QelInfrastructureNodeTest, FolderRoundTripsAndCursorIsRestored) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(node(), 1115), 0);
    ASSERT_EQ(tree->seek(1115), 0);
    QelInfrastructureNode back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(tree->curID(), 1115);
    EXPECT_EQ(back.nodeID, QelGUID(1, 2));
    EXPECT_EQ(back.parentID, QelGUID(3, 4));
    ASSERT_TRUE(back.folder.isSpecified());
    EXPECT_EQ(back.folder->name, "servers");
    EXPECT_EQ(back.folder->type, 3);
    EXPECT_EQ(back.folder->description.get(), "all of them");
}

TEST(QelInfrastructureNodeTest, RejectedFolderBecomesUnspecified) {
    TestTree tree;
    QelInfrastructureNode written = node();
    written.folder.get().type = 6;
    ASSERT_EQ(tree->putObj(written, 1115), 0);
    ASSERT_EQ(tree->seek(1115), 0);
    QelInfrastructureNode back = node();
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_EQ(tree->curID(), 1115);
    EXPECT_FALSE(back.folder.isSpecified());
}

TEST(QelInfrastructureNodeTest, RequiresIdAndParent) {
    for (const int id : {1010, 2241}) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(node(), 0), 0);
        tree->deleteChild(id);
        QelInfrastructureNode back;
        EXPECT_EQ(tree->getObj(back, 0), -1) << id;
        EXPECT_FALSE(back.folder.isSpecified());
    }
}

TEST(QelInfrastructureNodeTest, FailedWriteReturnsOne) {
    EXPECT_EQ(TestSupport::writeWithoutValues(node()), 1);
    EXPECT_EQ(TestSupport::writeWithoutValues(folder()), 1);
}

} // namespace
} // namespace Qel
