#include "QelFunctionalityCore/Host/QelVncRecords.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int password = 1032;

QelConnectivityInfo at(const std::string& address) {
    QelConnectivityInfo info;
    info.address = address;
    return info;
}

TEST(QelVncConnectionInfoTest, WritesPasswordLast) {
    QelVncConnectionInfo info;
    info.password = std::string("p\0w", 3);
    info.server2308 = at("one");
    info.server2309 = at("two");
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(info, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(2308, 2309, password));
    EXPECT_EQ(childValue(message.cursor(), password), "cAB3");
    expectStampOf<QelVncConnectionInfo::Writer>(message.cursor());
    EXPECT_EQ(QelVncConnectionInfo::Writer::getTypeID(), 390);
}

TEST(QelVncConnectionInfoTest, MissingPasswordIsRejectedAfterServersAreRead) {
    QelVncConnectionInfo info;
    info.server2308 = at("one");
    info.server2309 = at("two");
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(info, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(2308, 2309, password)) << "an empty password is written";
    message.cursor().deleteChild(password);
    QelVncConnectionInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.server2308->address, "one");
    EXPECT_TRUE(read.server2309.isSpecified());
    EXPECT_EQ(read.server2309->address, "two");
}

TEST(QelVncConnectionInfoTest, IgnoresFailureToReadOrWriteServer) {
    QelVncConnectionInfo info;
    info.server2308 = at("");
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(info, 0), 0);
    EXPECT_EQ(countChildren(message.cursor(), password), 1);
    QelVncConnectionInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.server2308.isSpecified());
}

TEST(QelVncConsoleInfoTest, ConnectionSharesElementAndStampsItsType) {
    QelVncConsoleInfo console;
    console.value2311 = 1;
    console.value2312 = 2;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(console, 1115), 0);
    ASSERT_EQ(message.cursor().seek(1115), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(2312, 2311, password));
    expectStampOf<QelVncConnectionInfo::Writer>(message.cursor());
    console.value2310 = 0;
    EXPECT_EQ(message.cursor().putObj(console, 1007), 0);
    ASSERT_EQ(message.cursor().seek(1007), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(2310, 2312, 2311, password));
    QelVncConsoleInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_TRUE(read.value2310.isSpecified());
    EXPECT_EQ(read.value2311, 1);
    EXPECT_EQ(read.value2312, 2);
}

TEST(QelVncConsoleInfoTest, FailedReadResetsNumberToZero) {
    const TestMessage missing;
    missing.cursor().putValueBase64("pw", password);
    const TestMessage unreadable;
    unreadable.cursor().putValueBase64("pw", password);
    unreadable.cursor().putValue("no number", 2311);
    unreadable.cursor().putValue("no number", 2312);
    for (const TestMessage* const message : {&missing, &unreadable}) {
        QelVncConsoleInfo read;
        read.value2310 = 1;
        read.value2311 = 2;
        read.value2312 = 3;
        EXPECT_EQ(message->cursor().getObj(read, 0), 0);
        EXPECT_EQ(read.value2311, 0);
        EXPECT_EQ(read.value2312, 0);
        EXPECT_TRUE(read.value2310.isSpecified()) << "changed only by a successful read";
    }
}

TEST(QelVncConsoleInfoTest, ResultDependsOnConnectionOnly) {
    const TestMessage message;
    message.cursor().putValue("no number", 2310);
    message.cursor().putValue("no number", 2311);
    QelVncConsoleInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    message.cursor().putValueBase64("pw", password);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.value2310.isSpecified());
    EXPECT_EQ(read.value2311, 0);
    EXPECT_EQ(read.value2312, 0);
    EXPECT_EQ(read.connection.password, "pw");
}

} // namespace
} // namespace Qel
