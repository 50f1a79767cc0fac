#include "QelFunctionalityCore/Profile/QelDesktopSettings.h"

#include <gmock/gmock.h>

#include "ProfileSamples.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/RequiredChildren.h"

namespace Qel {

namespace {

TEST(QelDesktopActionTest, WritesNameFirst) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelDesktopAction(), 0), 0);
    EXPECT_THAT(childIDs(*tree), testing::ElementsAre(2205, 2206));
}

TEST(QelDesktopActionTest, ReadsNameFirst) {
    TestTree tree;
    tree->putValue("true", 2206);
    QelDesktopAction action;
    EXPECT_EQ(tree->getObj(action, 0), -1);
    EXPECT_FALSE(action.flag2206);
}

TEST(QelDesktopSettingsTest, EmptyActionsAreEmptyElement) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelDesktopSettings(), 0), 0);
    ASSERT_EQ(tree->seek(1503), 0);
    EXPECT_EQ(countChildren(*tree), 0);
    tree->seekUp();
    QelDesktopSettings read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_TRUE(read.actions.empty());
}

TEST(QelDesktopSettingsTest, RequiresElementOfActions) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelDesktopSettings(), 0), 0);
    ASSERT_EQ(tree->deleteChild(1503), 0);
    QelDesktopSettings read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
}

TEST(QelDesktopSettingsTest, RequiresEveryField) {
    TestSupport::expectRequired(QelDesktopSettings(), {2207, 2203, 2202, 2201, 2208});
}

} // namespace

} // namespace Qel
