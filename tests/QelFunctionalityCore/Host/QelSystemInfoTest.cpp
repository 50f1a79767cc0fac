#include "QelFunctionalityCore/Host/QelSystemInfo.h"

#include <gmock/gmock.h>

#include "support/RequiredChildren.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

TEST(QelSystemInfoTest, ProcessorsHaveTheirOwnElement) {
    QelSystemInfo info;
    info.arch = "x86_64";
    info.name = "Some processor";
    info.f2123 = 8;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(info, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1276, 1277, 1229, 1078, 1079));
    ASSERT_EQ(message.cursor().seek(1229), 0);
    EXPECT_EQ(message.cursor().curNamespaceID(), 292);
    EXPECT_EQ(message.cursor().curType(), "");
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1049, 1052, 1047, 1050, 1048, 2122, 2123, 1026, 1051));
    message.cursor().seekUp();
    QelSystemInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.name, "Some processor");
    EXPECT_EQ(read.f2123, 8);
}

TEST(QelSystemInfoTest, RequiresAllElements) {
    expectRequired(QelSystemInfo(), {1276, 1277, 1229, 1078, 1079});
    for (const int element : {1049, 1052, 1047, 1050, 1048, 2122, 2123, 1026, 1051}) {
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(QelSystemInfo(), 0), 0);
        ASSERT_EQ(message.cursor().seek(1229), 0);
        message.cursor().deleteChild(element);
        message.cursor().seekUp();
        QelSystemInfo read;
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << element;
        EXPECT_EQ(message.cursor().curName(), "/");
    }
}

} // namespace
} // namespace Qel
