#include "QelFunctionalityCore/Configuration/QelConfiguration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"
#include "QelFunctionalityCore/TestTree.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "support/TempFolder.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using TestSupport::textOf;

QelEID eid(int number) {
    return QelEID(number, 1);
}

QelConfiguration parsed(const std::string& elements, const std::string& envelope = {}) {
    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    EXPECT_EQ(message->fromTextEx(("<message" + envelope + ">" + elements + "</message>").c_str(), 0), 0);
    return QelConfiguration(message.get());
}

std::string section(const std::string& name, const std::string& options) {
    return "<data><" + name + "><configuration>" + options + "</configuration></" + name + "></data>";
}

std::string entry(const std::string& id) {
    return "<entry><id>" + id + "</id></entry>";
}

/// A cursor at an element of the configuration; fails the test if the element is missing.
class At {
public:
    At(const QelConfiguration& configuration, std::initializer_list<int> path)
        : m_cursor(configuration.getMessage()->rootIterator()) {
        for (const int element : path)
            EXPECT_EQ(m_cursor->seek(element), 0) << element;
    }
    QelMessageIterator& operator*() const { return *m_cursor; }
    QelMessageIterator* operator->() const { return m_cursor.get(); }

private:
    std::unique_ptr<QelMessageIterator> m_cursor;
};

QelConnectionInfo connection(const std::string& address) {
    QelConnectionInfo info;
    info.protocol = "ssl";
    info.address = address;
    info.password = "pw";
    return info;
}

QelConfiguration withAgent() {
    return parsed(section("agent", ""));
}

std::vector<QelEID> slavesOf(const QelConfiguration& configuration) {
    QelEIDList slaves;
    configuration.getGroupSlaves(slaves);
    return {slaves.begin(), slaves.end()};
}

TEST(QelConfigurationTest, ConstantsMatchProtocol) {
    EXPECT_EQ(QelConfiguration::subscriptionName, "qelconf_subscription");
    EXPECT_EQ(QelConfiguration::eventTag, 1044);
}

TEST(QelConfigurationTest, EveryOperationFailsOnEmptyConfiguration) {
    QelConfiguration empty;
    QelEID some;
    QelGUID id;
    QelConnectionInfo info;
    std::map<QelEID, QelConnectionInfo> table;
    EXPECT_EQ(empty.getMessage(), nullptr);
    EXPECT_EQ(empty.getIterator(), nullptr);
    EXPECT_EQ(empty.saveToFile("/nonexistent/file"), -1);
    EXPECT_EQ(empty.getEID(some), -1);
    EXPECT_EQ(empty.setEID(eid(1)), -1);
    EXPECT_EQ(empty.getBuiltinRealmID(id), -1);
    EXPECT_EQ(empty.getBuiltinRealm(), nullptr);
    EXPECT_EQ(empty.getMaster(some), -1);
    EXPECT_EQ(empty.setMaster(eid(1)), -1);
    EXPECT_EQ(empty.delMaster(), -1);
    EXPECT_FALSE(empty.isInServerGroup());
    EXPECT_TRUE(empty.isMaster());
    EXPECT_FALSE(empty.isSlave());
    EXPECT_EQ(empty.setMasterness(), -1);
    EXPECT_EQ(empty.unsetMasterness(), 0);
    EXPECT_EQ(empty.addClientEnv(eid(1)), -1);
    EXPECT_EQ(empty.delClientEnv(eid(1)), -1);
    EXPECT_THAT(slavesOf(empty), ElementsAre());
    EXPECT_EQ(empty.findMapping(eid(1), info), -1);
    EXPECT_EQ(empty.setMapping(eid(1), connection("host")), -1);
    EXPECT_EQ(empty.removeMapping(eid(1)), -1);
    EXPECT_EQ(empty.getMappingTable(table), -1);
}

TEST(QelConfigurationTest, OwnsCopyOfMessage) {
    const TestSupport::TestMessage message;
    message.cursor().newChild(1307);
    QelConfiguration configuration(message.get());
    EXPECT_NE(configuration.getMessage(), message.get());
    EXPECT_EQ(configuration.setMaster(eid(1)), 0);
    EXPECT_NE(message.cursor().firstChild(), 0);
}

TEST(QelConfigurationTest, CopiesOwnSeparateTrees) {
    const QelConfiguration original = withAgent();
    QelConfiguration copy(original);
    QelConfiguration assigned;
    assigned = original;
    EXPECT_EQ(copy.setEID(eid(1)), 0);
    EXPECT_EQ(assigned.setEID(eid(2)), 0);
    QelEID read;
    EXPECT_EQ(original.getEID(read), -1);
    EXPECT_EQ(copy.getEID(read), 0);
    EXPECT_EQ(read, eid(1));
}

TEST(QelConfigurationTest, SelfAssignmentChangesNothingAndEmptyAssignmentEmpties) {
    QelConfiguration configuration = withAgent();
    QelMessage* const message = configuration.getMessage();
    const QelConfiguration& itself = configuration;
    configuration = itself;
    EXPECT_EQ(configuration.getMessage(), message);
    configuration = QelConfiguration();
    EXPECT_EQ(configuration.getMessage(), nullptr);
}

TEST(QelConfigurationTest, ResetOptionallyCopiesEnvelope) {
    const TestSupport::TestMessage message;
    message->setRequestId("7");
    QelConfiguration configuration;
    std::string id;
    configuration.reset(message.get(), false);
    EXPECT_NE(configuration.getMessage()->getRequestId(id), 0);
    configuration.reset(message.get(), true);
    EXPECT_EQ(configuration.getMessage()->getRequestId(id), 0);
    configuration.reset(nullptr, true);
    EXPECT_EQ(configuration.getMessage(), nullptr);
}

TEST(QelConfigurationTest, ResetAcceptsOwnMessage) {
    QelConfiguration configuration = withAgent();
    configuration.reset(configuration.getMessage(), false);
    EXPECT_EQ(configuration.setEID(eid(1)), 0);
}

TEST(QelConfigurationTest, IteratorWritesToCopy) {
    const QelConfiguration configuration = withAgent();
    const std::unique_ptr<QelConfigurationIterator> at(configuration.getIterator());
    EXPECT_EQ(at->putValue(1, "/agent/option"), 0);
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1044, 1021})), 0);
}

TEST(QelConfigurationTest, SavedFileIsReadBack) {
    const TestSupport::TempFolder folder;
    QelConfiguration saved = withAgent();
    ASSERT_EQ(saved.setEID(eid(1)), 0);
    ASSERT_EQ(saved.saveToFile(folder.path("agent.conf")), 0);
    QelConfiguration read;
    ASSERT_EQ(read.readFromFile(folder.path("agent.conf")), 0);
    EXPECT_EQ(textOf(*read.getMessage()), textOf(*saved.getMessage()));
}

TEST(QelConfigurationTest, UnreadableFileLeavesConfigurationUnchanged) {
    const TestSupport::TempFolder folder;
    QelConfiguration configuration = withAgent();
    QelMessage* const message = configuration.getMessage();
    EXPECT_EQ(configuration.readFromFile(folder.path("none")), -1);
    EXPECT_EQ(configuration.readFromFile(folder.write("damaged", "<message><data>")), -1);
    EXPECT_EQ(configuration.getMessage(), message);
}

TEST(QelConfigurationTest, IdentityIsReadBack) {
    QelConfiguration configuration = withAgent();
    QelEID read = eid(9);
    EXPECT_EQ(configuration.getEID(read), -1);
    EXPECT_EQ(read, eid(9));
    ASSERT_EQ(configuration.setEID(eid(1)), 0);
    ASSERT_EQ(configuration.setEID(eid(2)), 0);
    ASSERT_EQ(configuration.getEID(read), 0);
    EXPECT_EQ(read, eid(2));
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1044, 1021}), 1010), 1);
}

TEST(QelConfigurationTest, SettingIdentityDoesNotCreateSection) {
    QelConfiguration configuration = parsed("<data/>");
    const std::string before = textOf(*configuration.getMessage());
    EXPECT_EQ(configuration.setEID(eid(1)), -1);
    EXPECT_EQ(configuration.setMapping(eid(1), connection("host")), -1);
    EXPECT_EQ(textOf(*configuration.getMessage()), before);
}

std::string realms(const std::string& wanted) {
    const std::string unknown = "<realm xmlns:x=\"urn:qel:files\" "
                                "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"x:file\">";
    return section("security", "<builtin_realm>" + wanted + "</builtin_realm><realms>" + "<realm><name>first</name>" +
                                   "<type>1</type><id>" + eid(1).toString() + "</id></realm>" + unknown +
                                   "<name>second</name><type>2</type><id>" + eid(2).toString() + "</id></realm>" +
                                   "<realm><name>third</name><type>3</type><id>" + eid(2).toString() +
                                   "</id></realm></realms>");
}

TEST(QelConfigurationTest, BuiltinRealmIsFirstWithItsId) {
    const QelConfiguration configuration = parsed(realms(eid(2).toString()));
    QelGUID id;
    ASSERT_EQ(configuration.getBuiltinRealmID(id), 0);
    EXPECT_EQ(id, eid(2));
    const boost::shared_ptr<QelRealm> realm = configuration.getBuiltinRealm();
    ASSERT_NE(realm, nullptr);
    // Its type is unknown, so it is read as a plain realm.
    EXPECT_EQ(realm->name, "second");
}

TEST(QelConfigurationTest, WithoutMatchThereIsNoBuiltinRealm) {
    EXPECT_EQ(parsed(realms(eid(3).toString())).getBuiltinRealm(), nullptr);
    EXPECT_EQ(parsed(realms("no identifier")).getBuiltinRealm(), nullptr);
    const std::string wanted = "<builtin_realm>" + eid(1).toString() + "</builtin_realm>";
    EXPECT_EQ(parsed(section("security", wanted)).getBuiltinRealm(), nullptr);
    EXPECT_EQ(parsed(section("security", wanted + "<realms/>")).getBuiltinRealm(), nullptr);
    EXPECT_EQ(parsed(section("security", wanted + "<realms><realm/></realms>")).getBuiltinRealm(), nullptr);
    EXPECT_EQ(parsed("<data/>").getBuiltinRealm(), nullptr);
}

TEST(QelConfigurationTest, SettingMasterCreatesSectionAndJoinsGroup) {
    QelConfiguration configuration = parsed("<data/>");
    ASSERT_EQ(configuration.setMaster(eid(1)), 0);
    EXPECT_TRUE(configuration.isInServerGroup());
    EXPECT_EQ(childValue(*At(configuration, {1307, 1875, 1021, 1680}), 1010), eid(1).toString());
    EXPECT_EQ(configuration.delMaster(), 0);
    EXPECT_FALSE(configuration.isInServerGroup());
    EXPECT_EQ(configuration.delMaster(), -1);
}

TEST(QelConfigurationTest, NewMasterReplacesOldOne) {
    QelConfiguration configuration = parsed("<data><server_group/></data>");
    ASSERT_EQ(configuration.setMaster(eid(1)), 0);
    ASSERT_EQ(configuration.setMaster(eid(2)), 0);
    QelEID read;
    ASSERT_EQ(configuration.getMaster(read), 0);
    EXPECT_EQ(read, eid(2));
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1875, 1021})), 1);
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1875, 1021, 1680})), 1);
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1875})), 1);
}

TEST(QelConfigurationTest, AgentWithoutGroupIsItsOwnMaster) {
    const QelConfiguration configuration = withAgent();
    EXPECT_FALSE(configuration.isInServerGroup());
    EXPECT_TRUE(configuration.isMaster());
    EXPECT_FALSE(configuration.isSlave());
}

TEST(QelConfigurationTest, GroupConfigurationDeterminesMaster) {
    QelConfiguration configuration = withAgent();
    ASSERT_EQ(configuration.setMaster(eid(1)), 0);
    // An agent without an identity of its own is neither master nor slave.
    EXPECT_FALSE(configuration.isMaster());
    EXPECT_FALSE(configuration.isSlave());
    ASSERT_EQ(configuration.setEID(eid(1)), 0);
    EXPECT_TRUE(configuration.isMaster());
    EXPECT_FALSE(configuration.isSlave());
    ASSERT_EQ(configuration.setEID(eid(2)), 0);
    EXPECT_FALSE(configuration.isMaster());
    EXPECT_TRUE(configuration.isSlave());
}

TEST(QelConfigurationTest, MasterElementWithoutIdIsNotAGroup) {
    const QelConfiguration configuration = parsed(section("server_group", "<master/>"));
    EXPECT_FALSE(configuration.isInServerGroup());
    EXPECT_TRUE(configuration.isMaster());
}

TEST(QelConfigurationTest, MasternessIsPresenceOfSlaveList) {
    QelConfiguration configuration = parsed("<data/>");
    EXPECT_EQ(configuration.setMasterness(), 0);
    EXPECT_EQ(configuration.setMasterness(), 0);
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1875, 1021}), 1681), 1);
    EXPECT_EQ(configuration.unsetMasterness(), 0);
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1875, 1021}), 1681), 0);
    EXPECT_EQ(configuration.unsetMasterness(), 0);
}

TEST(QelConfigurationTest, MasternessWithSlavesCannotBeUnset) {
    QelConfiguration configuration = parsed("<data/>");
    ASSERT_EQ(configuration.addClientEnv(eid(1)), 0);
    EXPECT_EQ(configuration.unsetMasterness(), -1);
    EXPECT_THAT(slavesOf(configuration), ElementsAre(eid(1)));
}

TEST(QelConfigurationTest, SlaveAddedTwiceIsListedTwiceAndRemovedOneAtATime) {
    QelConfiguration configuration = parsed("<data/>");
    for (const int number : {1, 2, 1})
        ASSERT_EQ(configuration.addClientEnv(eid(number)), 0);
    ASSERT_EQ(configuration.delClientEnv(eid(1)), 0);
    EXPECT_EQ(childValue(*At(configuration, {1307, 1875, 1021, 1681, 1008}), 1010), eid(2).toString());
    EXPECT_THAT(slavesOf(configuration), ElementsAre(eid(1), eid(2)));
    ASSERT_EQ(configuration.delClientEnv(eid(1)), 0);
    EXPECT_EQ(configuration.delClientEnv(eid(1)), -1);
    EXPECT_THAT(slavesOf(configuration), ElementsAre(eid(2)));
}

TEST(QelConfigurationTest, UnreadableSlavesAreSkippedAndSetKeepsItsMembers) {
    const QelConfiguration configuration = parsed(
        section("server_group", "<slaves><entry/>" + entry("no identifier") + entry(eid(2).toString()) + "</slaves>"));
    QelEIDList slaves;
    slaves.insert(eid(1));
    configuration.getGroupSlaves(slaves);
    EXPECT_THAT(slaves, ElementsAre(eid(1), eid(2)));
}

TEST(QelConfigurationTest, FindsMappingByAgent) {
    QelConfiguration configuration = withAgent();
    QelConnectionInfo info;
    EXPECT_EQ(configuration.findMapping(eid(1), info), -1);
    ASSERT_EQ(configuration.setMapping(eid(1), connection("one")), 0);
    ASSERT_EQ(configuration.setMapping(eid(2), connection("two")), 0);
    ASSERT_EQ(configuration.findMapping(eid(2), info), 0);
    EXPECT_EQ(info.address, "two");
    EXPECT_EQ(info.password, "pw");
    EXPECT_EQ(configuration.findMapping(eid(3), info), -1);
    EXPECT_EQ(info.address, "two");
    EXPECT_EQ(childValue(*At(configuration, {1307, 1044, 1021, 1677, 1008}), 1068), "one");
}

TEST(QelConfigurationTest, ExistingMappingIsKept) {
    QelConfiguration configuration = withAgent();
    ASSERT_EQ(configuration.setMapping(eid(1), connection("old")), 0);
    ASSERT_EQ(configuration.setMapping(eid(1), connection("new")), 0);
    QelConnectionInfo info;
    ASSERT_EQ(configuration.findMapping(eid(1), info), 0);
    EXPECT_EQ(info.address, "old");
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1044, 1021, 1677}), 1008), 1);
    ASSERT_EQ(configuration.removeMapping(eid(1)), 0);
    ASSERT_EQ(configuration.setMapping(eid(1), connection("new")), 0);
    ASSERT_EQ(configuration.findMapping(eid(1), info), 0);
    EXPECT_EQ(info.address, "new");
}

TEST(QelConfigurationTest, PartlyWrittenMappingIsNotAnError) {
    QelConfiguration configuration = withAgent();
    EXPECT_EQ(configuration.setMapping(eid(1), QelConnectionInfo()), 0);
    QelConnectionInfo info = connection("old");
    EXPECT_EQ(configuration.findMapping(eid(1), info), 0);
    EXPECT_EQ(info.address, "old");
}

TEST(QelConfigurationTest, RemovingMissingMappingSucceedsIfTableExists) {
    QelConfiguration configuration = withAgent();
    EXPECT_EQ(configuration.removeMapping(eid(1)), -1);
    ASSERT_EQ(configuration.setMapping(eid(1), connection("one")), 0);
    EXPECT_EQ(configuration.removeMapping(eid(2)), 0);
    EXPECT_EQ(configuration.removeMapping(eid(1)), 0);
    EXPECT_EQ(configuration.removeMapping(eid(1)), 0);
    EXPECT_EQ(countChildren(*At(configuration, {1307, 1044, 1021, 1677})), 0);
}

TEST(QelConfigurationTest, MappingTableIsMergedIntoMap) {
    QelConfiguration configuration = withAgent();
    std::map<QelEID, QelConnectionInfo> table;
    table[eid(1)] = connection("old");
    table[eid(9)] = connection("nine");
    EXPECT_EQ(configuration.getMappingTable(table), -1);
    ASSERT_EQ(configuration.setMapping(eid(1), connection("one")), 0);
    ASSERT_EQ(configuration.setMapping(eid(2), connection("two")), 0);
    ASSERT_EQ(configuration.getMappingTable(table), 0);
    ASSERT_EQ(table.size(), 3u);
    EXPECT_EQ(table[eid(1)].address, "one");
    EXPECT_EQ(table[eid(2)].address, "two");
    EXPECT_EQ(table[eid(9)].address, "nine");
}

TEST(QelConfigurationTest, EntryNeedsIdButNoConnection) {
    const QelConfiguration configuration = parsed(section("agent", "<mapping_table><entry/>" + entry("no identifier") +
                                                                       entry(eid(2).toString()) + "</mapping_table>"));
    std::map<QelEID, QelConnectionInfo> table;
    ASSERT_EQ(configuration.getMappingTable(table), 0);
    ASSERT_EQ(table.size(), 1u);
    EXPECT_EQ(table[eid(2)].address, "");

    const QelConfiguration bare = parsed(section("agent", "<mapping_table/>"));
    EXPECT_EQ(bare.getMappingTable(table), 0);
    EXPECT_EQ(table.size(), 1u);
}

TEST(QelConfigurationTest, IsWrittenAsItsDataElement) {
    QelConfiguration configuration = withAgent();
    ASSERT_EQ(configuration.setEID(eid(1)), 0);
    TestTree tree;
    ASSERT_EQ(tree->putObj(configuration, 1021), 0);
    ASSERT_EQ(tree->seek(1021), 0);
    ASSERT_EQ(tree->seek(1307), 0);
    EXPECT_EQ(tree->seek(1044), 0);

    TestTree target;
    EXPECT_EQ(target->putObj(QelConfiguration(), 0), -1);
    EXPECT_EQ(target->putObj(parsed(""), 0), -1);
    EXPECT_EQ(countChildren(*target), 0);
}

TEST(QelConfigurationTest, ReadsWholeMessageWithEnvelope) {
    const TestSupport::TestMessage message;
    message->setRequestId("7");
    message.cursor().newChild(1307);
    message.cursor().newChild(1044);
    QelConfiguration read;
    ASSERT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(message.cursor().curID(), 1044);
    EXPECT_EQ(textOf(*read.getMessage()), textOf(*message.get()));
}

TEST(QelConfigurationTest, ConfigurationReadOwnsItsTree) {
    QelConfiguration sent = withAgent();
    ASSERT_EQ(sent.setEID(eid(1)), 0);
    QelConfiguration received;
    {
        const TestSupport::TestMessage message(sent.getMessage()->copy(true));
        ASSERT_EQ(message.cursor().getObj(received, 0), 0);
        ASSERT_EQ(received.setEID(eid(2)), 0);
        QelEID unchanged;
        ASSERT_EQ(QelConfiguration(message.get()).getEID(unchanged), 0);
        EXPECT_EQ(unchanged, eid(1));
    }
    QelEID own;
    EXPECT_EQ(received.getEID(own), 0);
    EXPECT_EQ(own, eid(2));
}

TEST(QelConfigurationTest, FactoryIsDefault) {
    EXPECT_EQ(QelDerivedParserFactory<QelConfiguration>::defaultFactory(), &factoryQelConfiguration);
    TestTree tree;
    tree->newChild(1307);
    boost::shared_ptr<QelConfiguration> read;
    ASSERT_EQ(tree->getObject(read, QelReaderDerived<QelConfiguration>(true), 0), 0);
    EXPECT_NE(read->getMessage(), nullptr);
}

class LocalConfigurationTest : public ::testing::Test {
protected:
    ~LocalConfigurationTest() override { QelConfiguration::setLocalConfig(nullptr); }
};

TEST_F(LocalConfigurationTest, IsEmptyUntilItIsSet) {
    EXPECT_EQ(QelConfiguration::getLocalConfig().getMessage(), nullptr);
    EXPECT_FALSE(QelConfiguration::getLocalEID().isValid());
}

TEST_F(LocalConfigurationTest, IsCopiedOnSetAndOnGet) {
    QelConfiguration configuration = withAgent();
    ASSERT_EQ(configuration.setEID(eid(1)), 0);
    EXPECT_EQ(QelConfiguration::setLocalConfig(configuration.getMessage()), 0);
    ASSERT_EQ(configuration.setEID(eid(2)), 0);
    QelConfiguration local = QelConfiguration::getLocalConfig();
    QelEID read;
    ASSERT_EQ(local.getEID(read), 0);
    EXPECT_EQ(read, eid(1));
    ASSERT_EQ(local.setEID(eid(3)), 0);
    EXPECT_EQ(QelConfiguration::getLocalEID(), eid(1));
}

TEST_F(LocalConfigurationTest, NewConfigurationChangesIdentity) {
    QelConfiguration configuration = withAgent();
    ASSERT_EQ(configuration.setEID(eid(1)), 0);
    QelConfiguration::setLocalConfig(configuration.getMessage());
    EXPECT_EQ(QelConfiguration::getLocalEID(), eid(1));
    ASSERT_EQ(configuration.setEID(eid(2)), 0);
    QelConfiguration::setLocalConfig(configuration.getMessage());
    EXPECT_EQ(QelConfiguration::getLocalEID(), eid(2));
    QelConfiguration::setLocalConfig(nullptr);
    EXPECT_FALSE(QelConfiguration::getLocalEID().isValid());
}

} // namespace

} // namespace Qel
