#include "QelFunctionalityCore/Host/QelDiskImage.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(QelDiskImageTest, WritesSpecifiedFieldsOnly) {
    const TestMessage message;
    QelDiskImage image;
    EXPECT_EQ(message.cursor().putObj(image, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    expectStampOf<QelDiskImage::Writer>(message.cursor());
    EXPECT_EQ(QelDiskImage::Writer::getNSID(), 308);
    EXPECT_EQ(QelDiskImage::Writer::getTypeID(), 375);
    image.name = std::string();
    image.description = std::string("two\0parts", 9);
    image.f1856 = false;
    EXPECT_EQ(message.cursor().putObj(image, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1496, 1856));
    EXPECT_EQ(childValue(message.cursor(), 1856), "0");
    QelDiskImage read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.description, image.description);
    EXPECT_TRUE(read.f1856.isSpecified());
    EXPECT_FALSE(read.size.isSpecified());
}

TEST(QelDiskImageTest, UnreadableFieldBecomesUnspecified) {
    const TestMessage message;
    message.cursor().putValue("no identifier", 1010);
    message.cursor().putValue("%%%", 1496);
    message.cursor().putValue("big", 1024);
    QelDiskImage read;
    read.size = 5LL;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.id.isSpecified());
    EXPECT_FALSE(read.description.isSpecified());
    EXPECT_FALSE(read.size.isSpecified());
    EXPECT_EQ(read.size.get(), 5);
}

TEST(QelImageInfoTest, RequiresTypeButNotImage) {
    const TestMessage message;
    QelImageInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    message.cursor().putValue(3, 1007);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.image.isSpecified());
    message.cursor().putChild(2259);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_TRUE(read.image.isSpecified());
}

TEST(QelFileShareTest, WritesFieldsInOrder) {
    QelFileShare share;
    share.id = QelGUID(1, 2);
    share.name = std::string("iso");
    for (const auto text :
         {&QelFileShare::path, &QelFileShare::description, &QelFileShare::f2247, &QelFileShare::password})
        share.*text = std::string("\xFF");
    share.f1192 = 1;
    share.f1845 = 2L;
    share.f1712 = 3;
    share.size = 1LL << 40;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(share, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1010, 1026, 1156, 1496, 2247, 1032, 1192, 1845, 1712, 1024));
    for (const int encoded : {1156, 1496, 2247, 1032})
        EXPECT_EQ(childValue(message.cursor(), encoded), "/w==");
    QelFileShare read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.f1845.get(), 2);
    EXPECT_EQ(read.size.get(), 1LL << 40);
}

TEST(QelFileShareTest, LongOf32BitsReceivesLowHalf) {
    const TestMessage message;
    message.cursor().putValue("4294967301", 1845);
    QelFileShare read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_TRUE(read.f1845.isSpecified());
    EXPECT_EQ(read.f1845.get(), sizeof(long) == 4 ? 5L : static_cast<long>(4294967301LL));
}

} // namespace
} // namespace Qel
