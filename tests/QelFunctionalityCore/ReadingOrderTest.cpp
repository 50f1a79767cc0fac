#include <gmock/gmock.h>

#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Events/QelEvent.h"
#include "QelFunctionalityCore/Events/QelRequestProgressData.h"
#include "QelFunctionalityCore/Events/QelResourceAlertData.h"
#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"
#include "QelFunctionalityCore/Security/QelAce.h"
#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelFunctionalityCore/Security/QelInfrastructureNode.h"
#include "QelFunctionalityCore/Security/QelPolicy.h"
#include "QelFunctionalityCore/Security/QelRole.h"
#include "QelFunctionalityCore/Security/QelSSOBase.h"
#include "QelFunctionalityCore/Security/QelSession.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "support/ScriptedCursor.h"

// The order in which records read their elements.  It determines which fields are set after a failed read.  In several
// records it differs from the writing order.

namespace Qel {

namespace {

using testing::ElementsAre;
using TestSupport::readingOrderIn;
using TestSupport::readingOrderOf;

TEST(ReadingOrderTest, EventsFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelEvent()), ElementsAre(1866, 1004, 1803, 1264, 1259, 1010, 1911, 1307, 1134));
}

TEST(ReadingOrderTest, EventsWithMissingFieldFollowTheProtocol) {
    const auto orderWithout = [](int element) {
        const TestSupport::TestMessage message;
        message.cursor().putObj(QelEvent(), 0);
        message.cursor().deleteChild(element);
        return readingOrderIn<QelEvent>(message);
    };
    EXPECT_THAT(orderWithout(1866), ElementsAre(1866));
    EXPECT_THAT(orderWithout(1803), ElementsAre(1866, 1004, 1803));
    EXPECT_THAT(orderWithout(1010), ElementsAre(1866, 1004, 1803, 1264, 1259, 1010));
}

TEST(ReadingOrderTest, AlertsFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelAlertData()), ElementsAre(1007, 1866));
    EXPECT_THAT(readingOrderOf(QelResourceAlertData()), ElementsAre(1007, 1866, 1094, 1905, 1906, 1065, 1066, 1067));
    EXPECT_THAT(readingOrderOf(QelServerGroupAlertData()), ElementsAre(1007, 1866, 1405, 1496, 1094));
}

TEST(ReadingOrderTest, InfosAndProgressFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelInfo("text", "name", true)), ElementsAre(1224, 1026, 1912, 1017));
    QelRequestProgressData progress("text");
    progress.requestId = "1";
    EXPECT_THAT(readingOrderOf(progress), ElementsAre(1010, 1914, 1638, 1004, 1224, 1397, 1192, 1899, 1962));
}

TEST(ReadingOrderTest, NamesFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelAuthName()), ElementsAre(1374, 1026, 1957));
    EXPECT_THAT(readingOrderOf(QelSecurityPrincipal()), ElementsAre(1029, 1737, 2121, 1307, 1374, 1026, 1957));
    EXPECT_THAT(readingOrderOf(QelDirRealm::LoginType()), ElementsAre(1374, 1026, 1957));
}

TEST(ReadingOrderTest, ConnectionsAndRealmsFollowTheProtocol) {
    QelConnectionInfo connection;
    connection.address = "host";
    EXPECT_THAT(readingOrderOf(connection), ElementsAre(1630, 1032, 1704, 1195, 1687));
    EXPECT_THAT(readingOrderOf(QelRealm()), ElementsAre(1010, 2116, 1026, 1007));
    QelDirRealm directory;
    directory.address = "host";
    directory.port = 389;
    EXPECT_THAT(readingOrderOf(directory), ElementsAre(1630, 1010, 2116, 1026, 1007, 1687, 1704, 1958, 1959));
}

TEST(ReadingOrderTest, PoliciesFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelPolicy()), ElementsAre(1010, 1026, 1496, 2275, 2276));
    EXPECT_THAT(readingOrderOf(QelObjectToPolicyAssignment()), ElementsAre(1010, 2286));
    EXPECT_THAT(readingOrderOf(QelEffectivePolicyAssignment()), ElementsAre(2285, 2276));
}

TEST(ReadingOrderTest, RolesFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelTask()), ElementsAre(1999, 1496, 1026));
    EXPECT_THAT(readingOrderOf(QelRole()), ElementsAre(1859, 1999, 1496, 1026));
    EXPECT_THAT(readingOrderOf(QelRoleAssignment()), ElementsAre(1859, 2071, 1935));
    EXPECT_THAT(readingOrderOf(QelAce()), ElementsAre(1935, 2082, 1999));
}

TEST(ReadingOrderTest, TokensAndSessionsFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelToken()), ElementsAre(1025, 2011, 2012, 2013, 1026));
    EXPECT_THAT(readingOrderOf(QelSession()), ElementsAre(1010, 1025, 1961, 1799, 1320, 1221, 1944, 1262, 1307));
    EXPECT_THAT(readingOrderOf(QelRegisteredClient()), ElementsAre(1010, 1259));
}

TEST(ReadingOrderTest, SingleSignOnAndInfrastructureFollowTheProtocol) {
    EXPECT_THAT(readingOrderOf(QelSSOServerConfig()), ElementsAre(1856, 1012, 1223));
    EXPECT_THAT(readingOrderOf(QelSSOServiceProviderConfig()),
                ElementsAre(1856, 2140, 2141, 1223, 1026, 2137, 2138, 2139, 2142, 2143, 2144));
    EXPECT_THAT(readingOrderOf(QelInfrastructureNode()), ElementsAre(1010, 2241, 2240));
}

} // namespace

} // namespace Qel
