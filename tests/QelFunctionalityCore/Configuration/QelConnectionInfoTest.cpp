#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

QelConnectivityInfo connectivity(const std::string& protocol, int port, const std::string& address) {
    QelConnectivityInfo info;
    info.protocol = protocol;
    info.port = port;
    info.address = address;
    return info;
}

TEST(QelConnectivityInfoTest, ProtocolAndPortPrecedeAddress) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(connectivity("ssl", 4434, "10.0.0.1"), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1195, 1704, 1687));
    QelConnectivityInfo read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.protocol, "ssl");
    EXPECT_EQ(read.port, 4434);
    EXPECT_EQ(read.address, "10.0.0.1");
}

TEST(QelConnectivityInfoTest, EmptyProtocolAndNonPositivePortAreNotWritten) {
    for (const int port : {0, -1, -4434}) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(connectivity("", port, "host"), 0), 0);
        EXPECT_THAT(childIDs(*tree), ElementsAre(1687)) << port;
    }
}

TEST(QelConnectivityInfoTest, MissingOrNonNumericFieldsAreUnchanged) {
    TestTree tree;
    tree->putValue("many", 1704);
    tree->putValue("host", 1687);
    QelConnectivityInfo read = connectivity("agent", 5, "old");
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.protocol, "agent");
    EXPECT_EQ(read.port, 5);
    EXPECT_EQ(read.address, "host");
}

TEST(QelConnectivityInfoTest, WithoutAddressNothingIsWritten) {
    TestTree tree;
    EXPECT_EQ(tree->putObj(connectivity("ssl", 1, ""), 0), -1);
    EXPECT_EQ(countChildren(*tree), 0);
}

TEST(QelConnectivityInfoTest, MissingAddressFailsAfterOthersAreRead) {
    TestTree tree;
    tree->putValue("ssl", 1195);
    tree->putValue(7, 1704);
    QelConnectivityInfo read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_EQ(read.protocol, "ssl");
    EXPECT_EQ(read.port, 7);
}

TEST(QelConnectionInfoTest, PasswordIsWrittenFirstAndAddressLast) {
    QelConnectionInfo info;
    info.protocol = "ssl";
    info.address = "host";
    info.password = std::string("p\0w", 3);
    info.authName.name = std::string("root");
    TestTree tree;
    ASSERT_EQ(tree->putObj(info, 1876), 0);
    ASSERT_EQ(tree->seek(1876), 0);
    EXPECT_EQ(tree->curType(), "env:connection_info");
    EXPECT_THAT(childIDs(*tree), ElementsAre(1032, 1630, 1195, 1687));
    EXPECT_EQ(childValue(*tree, 1032), "cAB3");
    ASSERT_EQ(tree->seek(1630), 0);
    EXPECT_EQ(tree->curType(), "env:auth_name");
    tree->seekUp();
    tree->seekUp();

    QelConnectionInfo read;
    ASSERT_EQ(tree->getObj(read, 1876), 0);
    EXPECT_EQ(read.password, info.password);
    EXPECT_EQ(read.authName.name.get(), "root");
    EXPECT_EQ(read.address, "host");
}

TEST(QelConnectionInfoTest, EmptyPasswordIsNotWritten) {
    QelConnectionInfo info;
    info.address = "host";
    TestTree tree;
    ASSERT_EQ(tree->putObj(info, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1630, 1687));
}

TEST(QelConnectionInfoTest, WithoutAddressWritingFailsAfterAuthName) {
    QelConnectionInfo info;
    info.password = "secret";
    TestTree tree;
    EXPECT_EQ(tree->putObj(info, 0), -1);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1032, 1630));
    EXPECT_THAT(getErrorMessage(), Not(HasSubstr("secret")));
}

TEST(QelConnectionInfoTest, OnlyAddressIsRequired) {
    TestTree tree;
    tree->putValue("host", 1687);
    QelConnectionInfo read;
    read.password = "old";
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.password, "old");
    EXPECT_EQ(read.address, "host");
}

TEST(QelConnectionInfoTest, UnreadablePasswordOrAuthNameIsIgnored) {
    TestTree tree;
    tree->putValue("%%% secret", 1032);
    tree->newChild(1630);
    tree->putValue("no identifier", 1957);
    tree->seekUp();
    tree->putValue("host", 1687);
    QelConnectionInfo read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_THAT(getErrorMessage(), Not(HasSubstr("secret")));
}

TEST(QelConnectionInfoTest, AuthNameAndPasswordAreReadBeforeMissingAddressFails) {
    TestTree tree;
    tree->putValueBase64("pw", 1032);
    QelConnectionInfo read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_EQ(read.password, "pw");
}

TEST(QelConnectionInfoTest, PasswordIsReadAfterUnreadableAuthName) {
    TestTree tree;
    tree->newChild(1630);
    tree->seekUp();
    tree->putValueBase64("pw", 1032);
    tree->putValue("host", 1687);
    QelConnectionInfo read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.password, "pw");
}

TEST(QelAgentConnectionInfoTest, AddressIsIdentityOfAgent) {
    const QelEID eid(1, 2);
    const QelAgentConnectionInfo info(eid);
    EXPECT_EQ(info.protocol, "agent");
    EXPECT_EQ(info.address, eid.toString());
    EXPECT_EQ(info.port, 0);
    EXPECT_TRUE(info.password.empty());

    TestTree tree;
    ASSERT_EQ(tree->putObj(info, 1876), 0);
    QelConnectionInfo read;
    ASSERT_EQ(tree->getObj(read, 1876), 0);
    EXPECT_EQ(read.address, eid.toString());
    ASSERT_EQ(tree->seek(1876), 0);
    EXPECT_EQ(tree->curType(), "env:connection_info");
}

TEST(QelAgentConnectionInfoTest, LocalAndMasterAgentAreSingletons) {
    QelConnectionInfo& local = QelAgentConnectionInfo::localConnectionInfo();
    QelConnectionInfo& master = QelAgentConnectionInfo::masterConnectionInfo();
    EXPECT_EQ(&local, &QelAgentConnectionInfo::localConnectionInfo());
    EXPECT_EQ(&master, &QelAgentConnectionInfo::masterConnectionInfo());
    EXPECT_EQ(local.protocol, "agent");
    EXPECT_EQ(local.address, "local");
    EXPECT_EQ(master.protocol, "agent");
    EXPECT_EQ(master.address, "master");
}

TEST(QelAgentConnectionInfoTest, ChangesAreKeptUntilAddressIsCleared) {
    QelConnectionInfo& local = QelAgentConnectionInfo::localConnectionInfo();
    local.address = "elsewhere";
    local.protocol = "ssl";
    EXPECT_EQ(QelAgentConnectionInfo::localConnectionInfo().address, "elsewhere");
    EXPECT_EQ(QelAgentConnectionInfo::localConnectionInfo().protocol, "ssl");
    local.address.clear();
    EXPECT_EQ(QelAgentConnectionInfo::localConnectionInfo().address, "local");
    EXPECT_EQ(local.protocol, "agent");
}

} // namespace

} // namespace Qel
