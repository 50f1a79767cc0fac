#include "QelFunctionalityCore/Profile/QelScreenSettings.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "ProfileSamples.h"
#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/RequiredChildren.h"

namespace Qel {

namespace {

using testing::ElementsAre;

TEST(QelScreenInfoTest, RequiresElementOfEmptySections) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(screenInfo("overview"), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2217, 2218));
    QelScreenInfo read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.name, "overview");
    EXPECT_TRUE(read.sections.empty());
    ASSERT_EQ(tree->deleteChild(2218), 0);
    EXPECT_EQ(tree->getObj(read, 0), -1);
}

TEST(QelScreenInfoTest, FilterWritesNameOnly) {
    QelScreenInfo info = screenInfo("overview");
    info.sections.resize(1);
    TestTree tree;
    ASSERT_EQ(tree->putObject(info, QelScreenInfo::filterWriter(), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2217));
    QelScreenInfo read;
    EXPECT_EQ(tree->getObject(read, QelScreenInfo::filterReader(), 0), 0);
    EXPECT_EQ(read.name, "overview");
    ASSERT_EQ(tree->deleteChild(2217), 0);
    EXPECT_EQ(tree->getObject(read, QelScreenInfo::filterReader(), 0), -1);
    EXPECT_EQ(getErrorMessage(), "cannot read /: element screen_name is missing");
}

TEST(QelDashboardSectionTest, RequiresEveryField) {
    TestSupport::expectRequired(QelDashboardSection(), {2217, 2220, 1739, 2212});
}

TEST(QelScreenSettingsTest, OrdersByName) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(settingsOf<QelScreenSettings>({"t", "s"}), 0), 0);
    QelScreenSettings read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_THAT(namesOf(read), ElementsAre("s", "t"));
}

TEST(QelScreenSettingsTest, FilterSelectsByNameAndLeavesCursorAtLastScreen) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(settingsOf<QelScreenSettings>({"s", "t"}), 2188), 0);
    ASSERT_EQ(tree->seek(2188), 0);
    const auto filter = boost::make_shared<QelScreenSettings>(settingsOf<QelScreenSettings>({"s", "u"}));

    QelScreenSettings both;
    EXPECT_EQ(tree->getObject(both, QelScreenSettings::intersectionReader(filter), 0), 0);
    EXPECT_THAT(namesOf(both), ElementsAre("s"));
    EXPECT_EQ(childValue(*tree, 2217), "t");
    tree->seekUp();

    QelScreenSettings others;
    EXPECT_EQ(tree->getObject(others, QelScreenSettings::differenceReader(filter), 0), 0);
    EXPECT_THAT(namesOf(others), ElementsAre("t"));
    EXPECT_EQ(childValue(*tree, 2217), "t");
}

TEST(QelScreenSettingsTest, EmptyFilterReadsAllScreens) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(settingsOf<QelScreenSettings>({"s", "t"}), 0), 0);
    QelScreenSettings read;
    EXPECT_EQ(tree->getObject(read, QelScreenSettings::intersectionReader(nullptr), 0), 0);
    EXPECT_THAT(namesOf(read), ElementsAre("s", "t"));
}

TEST(QelScreenSettingsTest, ScreenWithoutNameFailsFilteredRead) {
    TestTree tree;
    tree->putChild(2219);
    const auto filter = boost::make_shared<QelScreenSettings>(settingsOf<QelScreenSettings>({"s"}));
    QelScreenSettings read;
    EXPECT_EQ(tree->getObject(read, QelScreenSettings::differenceReader(filter), 0), -1);
    EXPECT_TRUE(read.items.empty());
}

} // namespace

} // namespace Qel
