#include "QelFunctionalityCore/Security/QelSSOBase.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/TestTree.h"
#include "support/LogCapture.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* missingParameterLog = "1 Required configuration parameters are not set";

QelSSOServiceProviderConfig provider() {
    QelSSOServiceProviderConfig made;
    made.name = "agent";
    made.enabled = true;
    made.field2137 = "37";
    made.field2138 = "38";
    made.field2139 = "39";
    made.field2140 = "40";
    made.field2141 = "41";
    made.field2142 = "42";
    made.field2143 = "43";
    made.field2144 = "44";
    made.providerVersion = "2.0";
    return made;
}

TEST(QelSSOServerConfigTest, OmitsFlagIfDisabled) {
    TestTree tree;
    ASSERT_EQ(
        tree->putObj(QelSSOServerConfig{.server = "sso.example.org", .serverVersion = "2.0", .enabled = false}, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1012, 1223));
    QelSSOServerConfig back{.server = "", .serverVersion = "", .enabled = true};
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_FALSE(back.enabled);
    EXPECT_EQ(back.server, "sso.example.org");
    EXPECT_EQ(back.serverVersion, "2.0");
}

TEST(QelSSOServerConfigTest, WritesEmptyFlagElementIfEnabled) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelSSOServerConfig{.server = "sso.example.org", .serverVersion = "2.0", .enabled = true}, 0),
              0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1012, 1223, 1856));
    EXPECT_EQ(childValue(*tree, 1856), "");
    QelSSOServerConfig back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_TRUE(back.enabled);
}

TEST(QelSSOServerConfigTest, LogsMissingParameter) {
    for (const int id : {1012, 1223}) {
        TestTree tree;
        ASSERT_EQ(
            tree->putObj(QelSSOServerConfig{.server = "sso.example.org", .serverVersion = "2.0", .enabled = true}, 0),
            0);
        tree->deleteChild(id);
        const TestSupport::LogCapture log;
        QelSSOServerConfig back;
        EXPECT_EQ(tree->getObj(back, 0), -1);
        EXPECT_THAT(log.messages(), ElementsAre(missingParameterLog));
        EXPECT_EQ(log.lines().front().file, "core/src/QelFunctionalityCore/QelSSOBase");
        EXPECT_TRUE(back.enabled) << "the flag is read first";
    }
}

TEST(QelSSOServiceProviderConfigTest, WritesFieldsInOrder) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(provider(), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1026, 1856, 2137, 2138, 2139, 2140, 2141, 2142, 2143, 2144, 1223));
    EXPECT_EQ(childValue(*tree, 2140), "NDA=");
    EXPECT_EQ(childValue(*tree, 2144), "NDQ=");
    const TestSupport::LogCapture log;
    QelSSOServiceProviderConfig back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_THAT(log.messages(), IsEmpty());
    EXPECT_EQ(back.field2140, "40");
    EXPECT_EQ(back.field2144, "44");
    EXPECT_EQ(back.providerVersion, "2.0");
}

TEST(QelSSOServiceProviderConfigTest, OmitsEmptyOptionalFields) {
    TestTree tree;
    QelSSOServiceProviderConfig written = provider();
    written.enabled = false;
    written.field2140.clear();
    written.field2141.clear();
    written.providerVersion.clear();
    ASSERT_EQ(tree->putObj(written, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1026, 2137, 2138, 2139, 2142, 2143, 2144));
    QelSSOServiceProviderConfig back = provider();
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_FALSE(back.enabled);
    EXPECT_EQ(back.field2140, "40") << "a missing field is unchanged";
    EXPECT_EQ(back.providerVersion, "2.0");
}

TEST(QelSSOServiceProviderConfigTest, IgnoresUnreadableOptionalField) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(provider(), 0), 0);
    tree->deleteChild(2140);
    tree->putValue(std::string("!"), 2140);
    QelSSOServiceProviderConfig back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.field2140, "");
}

TEST(QelSSOServiceProviderConfigTest, FirstMissingParameterStopsReaderAndIsLogged) {
    const std::vector<int> required{1026, 2137, 2138, 2139, 2142, 2143, 2144};
    for (const int id : required) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(provider(), 0), 0);
        tree->deleteChild(id);
        const TestSupport::LogCapture log;
        QelSSOServiceProviderConfig back;
        EXPECT_EQ(tree->getObj(back, 0), -1) << id;
        EXPECT_THAT(log.messages(), ElementsAre(missingParameterLog));
        EXPECT_TRUE(back.enabled);
        EXPECT_EQ(back.field2140, "40") << "optional fields are read first";
        EXPECT_EQ(back.field2141, "41");
        EXPECT_EQ(back.providerVersion, "2.0");
        EXPECT_EQ(back.name, id > 1026 ? "agent" : "");
        EXPECT_EQ(back.field2137, id > 2137 ? "37" : "");
        EXPECT_EQ(back.field2139, id > 2139 ? "39" : "");
        EXPECT_EQ(back.field2143, id > 2143 ? "43" : "");
    }
}

TEST(QelSSOBaseTest, WriterIgnoresFailures) {
    EXPECT_EQ(TestSupport::writeWithoutValues(
                  QelSSOServerConfig{.server = "sso.example.org", .serverVersion = "2.0", .enabled = true}),
              0);
    EXPECT_EQ(TestSupport::writeWithoutValues(provider()), 0);
}

} // namespace
} // namespace Qel
