#include "QelFunctionalityCore/Files/QelFilerOptions.h"

#include <gmock/gmock.h>

#include "FilesTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int outer = 1138;
constexpr int inner = 1139;

TEST(QelFilerOptionsTest, NoFlagsWriteNothing) {
    const TestTree tree;
    writeTo(tree, QelFilerOptions());
    EXPECT_THAT(childIDs(*tree), IsEmpty());
    EXPECT_EQ(readFrom<QelFilerOptions>(tree).flags, 0U);
}

TEST(QelFilerOptionsTest, PlainFlagsAreEmptyElements) {
    for (const auto& [flag, element] : {std::pair{1U, 1152}, {2U, 1151}, {4U, 1140}, {64U, 1170}, {128U, 1174}}) {
        const TestTree tree;
        writeTo(tree, QelFilerOptions(flag));
        EXPECT_THAT(childIDs(*tree), ElementsAre(element));
        EXPECT_EQ(childValue(*tree, element), "");
        EXPECT_EQ(readFrom<QelFilerOptions>(tree).flags, flag);
    }
}

TEST(QelFilerOptionsTest, OuterElementAloneIsBit16) {
    const TestTree tree;
    writeTo(tree, QelFilerOptions(16));
    EXPECT_THAT(childIDs(*tree), ElementsAre(outer));
    ASSERT_EQ(tree->seek(outer), 0);
    EXPECT_THAT(childIDs(*tree), IsEmpty());
    tree->seekUp();
    EXPECT_EQ(readFrom<QelFilerOptions>(tree).flags, 16U);
}

TEST(QelFilerOptionsTest, OuterElementWithInnerElementIsBit32) {
    for (const unsigned flags : {32U, 16U | 32U}) {
        const TestTree tree;
        writeTo(tree, QelFilerOptions(flags));
        EXPECT_THAT(childIDs(*tree), ElementsAre(outer));
        ASSERT_EQ(tree->seek(outer), 0);
        EXPECT_THAT(childIDs(*tree), ElementsAre(inner));
        tree->seekUp();
        EXPECT_EQ(readFrom<QelFilerOptions>(tree).flags, 32U);
    }
}

TEST(QelFilerOptionsTest, FlagsAreWrittenInOrder) {
    const TestTree tree;
    writeTo(tree, QelFilerOptions(~0U));
    EXPECT_THAT(childIDs(*tree), ElementsAre(1152, 1151, 1140, 1170, 1174, outer));
}

TEST(QelFilerOptionsTest, ReadingReplacesFlags) {
    const TestTree tree;
    tree->putChild(1140);
    QelFilerOptions options(~0U);
    EXPECT_EQ(tree->getObj(options, 0), 0);
    EXPECT_EQ(options.flags, 4U);
    EXPECT_TRUE(options.has(QelFilerOptions::option1140));
    EXPECT_FALSE(options.has(QelFilerOptions::overwrite));
}

} // namespace
} // namespace Qel
