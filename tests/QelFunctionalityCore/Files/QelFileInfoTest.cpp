#include "QelFunctionalityCore/Files/QelFileInfo.h"

#include <gmock/gmock.h>

#include "FilesTestSupport.h"
#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"
#include "QelFunctionalityCore/Files/QelUGIDLimits.h"
#include "support/RequiredChildren.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int data = 1328, path = 1156, offset = 1087, size = 1024;

TEST(QelFileInfoTest, EmptyDataIsNotWritten) {
    const TestTree tree;
    writeTo(tree, QelFileInfo("/a", 5, 6));
    EXPECT_THAT(childIDs(*tree), ElementsAre(path, offset, size));
}

TEST(QelFileInfoTest, DataComesFirst) {
    QelFileInfo info("/a", 3, 0);
    info.data = std::string("\0\xFF!", 3);
    const TestTree tree;
    writeTo(tree, info);
    EXPECT_THAT(childIDs(*tree), ElementsAre(data, path, offset, size));
    EXPECT_EQ(childValue(*tree, path), "L2E=");
    const auto read = readFrom<QelFileInfo>(tree);
    EXPECT_EQ(read.data, info.data);
    EXPECT_EQ(read.path, "/a");
    EXPECT_EQ(read.size, 3);
    EXPECT_EQ(read.offset, 0);
}

TEST(QelFileInfoTest, OnlyPathIsRequired) {
    const TestTree tree;
    tree->putValue(std::string("!"), data);
    tree->putValue(std::string("none"), offset);
    tree->putValue(std::string("none"), size);
    QelFileInfo info("before", 5, 6);
    EXPECT_EQ(tree->getObj(info, 0), -1);
    EXPECT_EQ(info.path, "before");
    tree->putValueBase64(std::string("after"), path);
    EXPECT_EQ(tree->getObj(info, 0), 0);
    EXPECT_EQ(info.path, "after");
    EXPECT_EQ(info.size, 5);
    EXPECT_EQ(info.offset, 6);
}

TEST(QelFileInfoTest, FieldsReadBeforeUnreadablePathAreKept) {
    const TestTree tree;
    tree->putValueLongLong(1LL << 40U, size);
    QelFileInfo info;
    EXPECT_EQ(tree->getObj(info, 0), -1);
    EXPECT_EQ(info.size, 1LL << 40U);
}

TEST(QelFileInfoTest, StartsImmediatelyAndIsItsOwnSourceAndDestination) {
    QelFileInfo info("/a", 0, 0);
    EXPECT_EQ(info.start(), 0);
    info.finish();
    EXPECT_EQ(info.getSrc(), "/a");
    EXPECT_EQ(info.getDst(), "/a");
}

TEST(QelSecurityAttributesTest, ModeIsOnlyField) {
    const TestTree tree;
    QelSecurityAttributes attributes;
    EXPECT_NE(tree->getObj(attributes, 0), 0);
    attributes.mode = 0640;
    writeTo(tree, attributes);
    EXPECT_EQ(childValue(*tree, 1135), "416");
    EXPECT_EQ(readFrom<QelSecurityAttributes>(tree).mode, 0640);
}

TEST(QelUGIDLimitsTest, EachLimitIsRequired) {
    QelUGIDLimits limits;
    limits.limit1 = 1;
    limits.limit2 = 2;
    limits.limit3 = 3;
    limits.limit4 = 4;
    const TestTree whole;
    writeTo(whole, limits);
    EXPECT_THAT(childIDs(*whole), ElementsAre(1539, 1540, 1541, 1542));
    EXPECT_EQ(readFrom<QelUGIDLimits>(whole).limit4, 4);
    expectRequired(limits, {1539, 1540, 1541, 1542});
}

} // namespace
} // namespace Qel
