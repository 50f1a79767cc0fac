#include "QelFunctionalityCore/Host/QelDisk.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(QelDiskPartitionTest, NumberIsWrittenThirdAndReadFourth) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelDiskPartition(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1297, 1299, 1298, 1300, 1301));
    message.cursor().deleteChild(1299);
    message.cursor().deleteChild(1298);
    message.cursor().putValue("ext4", 1298);
    QelDiskPartition read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.f1298, "ext4");
}

TEST(QelDiskPartitionTest, ReadReplacesList) {
    QelDiskPartition partition;
    partition.f1804 = {"b", "a"};
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(partition, 0), 0);
    QelDiskPartition read;
    read.f1804 = {"old"};
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.f1804, ElementsAre("b", "a"));
    message.cursor().deleteChild(1804);
    message.cursor().deleteChild(1804);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.f1804, IsEmpty());
}

TEST(QelDiskTest, AcceptsNoPartitionsAndRejectsMalformedOne) {
    const TestMessage message;
    QelDisk read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    message.cursor().putChild(1115);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

} // namespace
} // namespace Qel
