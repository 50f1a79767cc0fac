#include "QelFunctionalityCore/Host/QelPackageManagerOptions.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int listFlags = 1197;

QelPackageManagerOptions optionsOf(int mask) {
    QelPackageManagerOptions made;
    made.options = mask;
    return made;
}

TEST(QelPackageManagerOptionsTest, WritesSetBitsAsEmptyElementsLowestFirst) {
    const TestMessage some;
    EXPECT_EQ(some.cursor().putObj(optionsOf(33), 0), 0);
    EXPECT_THAT(childIDs(some.cursor()), ElementsAre(1844, 1917));
    const TestMessage all;
    EXPECT_EQ(all.cursor().putObj(optionsOf(-1), 0), 0);
    EXPECT_THAT(childIDs(all.cursor()), ElementsAre(1844, 1456, 1736, 1152, 1853, 1917));
    QelPackageManagerOptions read;
    EXPECT_EQ(all.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.options, 63);
}

TEST(QelPackageManagerOptionsTest, ReadClearsPreviousBits) {
    const TestMessage message;
    message.cursor().putChild(1736);
    QelPackageManagerOptions read = optionsOf(1);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.options, 4);
}

TEST(QelPackageManagerListOptionsTest, OmitsListFlagsIfZero) {
    QelPackageManagerListOptions options;
    const TestMessage bare;
    EXPECT_EQ(bare.cursor().putObj(options, 0), 0);
    EXPECT_THAT(childIDs(bare.cursor()), IsEmpty());
    options.options = 2;
    options.types = {"rpm", "deb"};
    options.listFlags = 1;
    const TestMessage filled;
    EXPECT_EQ(filled.cursor().putObj(options, 0), 0);
    EXPECT_THAT(childIDs(filled.cursor()), ElementsAre(1456, 1007, 1007, listFlags));
    ASSERT_EQ(filled.cursor().seek(listFlags), 0);
    EXPECT_THAT(childIDs(filled.cursor()), ElementsAre(1627));
    filled.cursor().seekUp();
    QelPackageManagerListOptions read;
    EXPECT_EQ(filled.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.options, 2);
    EXPECT_THAT(read.types, ElementsAre("rpm", "deb"));
    EXPECT_EQ(read.listFlags, 1);
}

TEST(QelPackageManagerListOptionsTest, EmptyListFlagsElementSetsNoFlag) {
    const TestMessage message;
    message.cursor().putChild(listFlags);
    QelPackageManagerListOptions read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.listFlags, 0);
}

TEST(QelPackageManagerListOptionsTest, ReadAddsToListFlagsOnly) {
    const TestMessage message;
    QelPackageManagerListOptions options;
    options.listFlags = 1;
    EXPECT_EQ(message.cursor().putObj(options, 0), 0);
    options.options = 4;
    options.listFlags = 2;
    EXPECT_EQ(message.cursor().getObj(options, 0), 0);
    EXPECT_EQ(options.options, 0);
    EXPECT_EQ(options.listFlags, 3);
    EXPECT_EQ(TestMessage().cursor().getObj(options, 0), 0);
    EXPECT_EQ(options.listFlags, 3) << "a missing element leaves it unchanged";
}

} // namespace
} // namespace Qel
