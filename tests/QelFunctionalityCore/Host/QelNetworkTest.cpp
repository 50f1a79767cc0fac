#include "QelFunctionalityCore/Host/QelNetwork.h"

#include <net/if.h>

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

TEST(QelNetInterfaceTest, UsesKernelInterfaceFlags) {
    QelNetInterface interface;
    EXPECT_TRUE(interface.isArpable());
    EXPECT_FALSE(interface.isLoopback());
    interface.flags = IFF_UP | IFF_LOOPBACK;
    EXPECT_TRUE(interface.isLoopback());
    EXPECT_TRUE(interface.isArpable());
    interface.flags = IFF_NOARP;
    EXPECT_FALSE(interface.isArpable());
    EXPECT_FALSE(interface.isLoopback());
}

TEST(QelNetInterfaceTest, RequiresNameOnly) {
    const TestMessage message;
    QelNetInterface read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    message.cursor().putValue("eth0", 1026);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    message.cursor().putChild(1071);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1) << "an address record without an IP address";
}

TEST(QelNetInterfaceTest, UnreadableFlagsKeepPreviousValue) {
    const TestMessage message;
    message.cursor().putValue("lo", 1026);
    message.cursor().putValue("up", 1712);
    QelNetInterface read;
    read.flags = IFF_LOOPBACK;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_TRUE(read.isLoopback());
}

TEST(QelNetworkTest, RequiresHostNameAndString) {
    QelNetwork network;
    network.hostname = "web";
    network.nameservers = {"10.0.0.1"};
    network.interfaces.resize(1);
    for (const int element : {1261, 1282}) {
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(network, 0), 0);
        EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1261, 1282, 1281, 1250));
        QelNetwork read;
        EXPECT_EQ(message.cursor().getObj(read, 0), 0);
        EXPECT_EQ(read.interfaces.size(), 1U);
        message.cursor().deleteChild(element);
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << element;
    }
}

} // namespace
} // namespace Qel
