#include "QelFunctionalityCore/Network/QelFirewallRule.h"

#include "QelFunctionalityCore/Network/NetworkRecordTest.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Rule = QelFirewallRule;

Rule fullRule() {
    Rule rule;
    rule.name = "web";
    rule.text1195 = Rule::PT_TCP;
    rule.text1196 = Rule::CT_INPUT;
    rule.text1197 = Rule::PL_ACCEPT;
    rule.flag1198 = true;
    rule.source = {.address = "10.0.0.0", .mask = "255.0.0.0"};
    rule.destination = {.address = "192.0.2.1", .mask = ""};
    rule.sourcePorts = {.first = 1024, .second = 65535};
    rule.destinationPorts = {.first = 443, .second = Rule::noPort};
    rule.text1203 = "eth0";
    rule.text1204 = "eth1";
    return rule;
}

TEST(QelFirewallRuleTest, DefinesPacketFilterKeywords) {
    EXPECT_EQ(Rule::PT_TCP, "tcp");
    EXPECT_EQ(Rule::PT_UDP, "udp");
    EXPECT_EQ(Rule::CT_INPUT, "INPUT");
    EXPECT_EQ(Rule::CT_OUTPUT, "OUTPUT");
    EXPECT_EQ(Rule::CT_FORWARD, "FORWARD");
    EXPECT_EQ(Rule::PL_ACCEPT, "ACCEPT");
    EXPECT_EQ(Rule::PL_DROP, "DROP");
    EXPECT_EQ(Rule::PL_REJECT, "REJECT");
}

TEST(QelFirewallRuleTest, DefaultHasNoPorts) {
    EXPECT_EQ(Rule().sourcePorts, (Rule::PortRange{.first = -1, .second = -1}));
    EXPECT_EQ(Rule().destinationPorts.toString('-'), "");
}

TEST(QelFirewallRuleTest, EqualityComparesAllFields) {
    void (*const changes[])(Rule&) = {
        [](Rule& rule) { rule.name += 'x'; },
        [](Rule& rule) { rule.text1195 += 'x'; },
        [](Rule& rule) { rule.text1196 += 'x'; },
        [](Rule& rule) { rule.text1197 += 'x'; },
        [](Rule& rule) { rule.flag1198 = false; },
        [](Rule& rule) { rule.source.address += 'x'; },
        [](Rule& rule) { rule.source.mask += 'x'; },
        [](Rule& rule) { rule.destination.address += 'x'; },
        [](Rule& rule) { rule.destination.mask += 'x'; },
        [](Rule& rule) { ++rule.sourcePorts.first; },
        [](Rule& rule) { ++rule.sourcePorts.second; },
        [](Rule& rule) { ++rule.destinationPorts.first; },
        [](Rule& rule) { ++rule.destinationPorts.second; },
        [](Rule& rule) { rule.text1203 += 'x'; },
        [](Rule& rule) { rule.text1204 += 'x'; },
    };
    EXPECT_EQ(fullRule(), fullRule());
    int number = 0;
    for (const auto change : changes) {
        Rule other = fullRule();
        change(other);
        EXPECT_FALSE(other == fullRule()) << "change " << number++;
    }
}

TEST(QelFirewallRuleTest, FormatsPorts) {
    EXPECT_EQ((Rule::PortRange{.first = 1000, .second = 2000}.toString('-')), "1000-2000");
    EXPECT_EQ((Rule::PortRange{.first = 80, .second = -1}.toString('-')), "80");
    EXPECT_EQ((Rule::PortRange{.first = -1, .second = -1}.toString('-')), "");
    EXPECT_EQ((Rule::PortRange{.first = -1, .second = 80}.toString(':')), "");
    EXPECT_EQ((Rule::PortRange{.first = 0, .second = 0}.toString(':')), "0:0");
}

TEST(QelFirewallRuleTest, FormatsAddress) {
    EXPECT_EQ((Rule::NetAddress{.address = "10.0.0.0", .mask = "8"}.toString('/')), "10.0.0.0/8");
    EXPECT_EQ((Rule::NetAddress{.address = "10.0.0.0", .mask = ""}.toString('/')), "10.0.0.0");
    EXPECT_EQ((Rule::NetAddress{.address = "", .mask = "8"}.toString('/')), "");
    EXPECT_EQ((Rule::NetAddress{}.toString('/')), "");
}

using QelFirewallRuleRecordTest = NetworkRecordTest;

TEST_F(QelFirewallRuleRecordTest, RoundTripsAllFields) {
    EXPECT_EQ(roundTrip(fullRule()), fullRule());
    EXPECT_THAT(childIDs(message), ElementsAre(1026, 1195, 1196, 1197, 1198, 1199, 1200, 1201, 1202, 1203, 1204));
    EXPECT_THAT(childrenIn(1199), ElementsAre(1068, 1069));
    EXPECT_THAT(childrenIn(1200), ElementsAre(1068));
    EXPECT_THAT(childrenIn(1201), ElementsAre(1193, 1194));
    EXPECT_THAT(childrenIn(1202), ElementsAre(1193)) << "a single port";
    EXPECT_EQ(value(1198), "1");
    EXPECT_EQ(valueIn(1202, 1193), "443");
    ASSERT_EQ(message.seek(1199), 0);
    EXPECT_EQ(message.curType(), "env:net_address");
    message.seekUp();
}

TEST_F(QelFirewallRuleRecordTest, EmptyRuleWritesOnlyNameAndFlag) {
    EXPECT_EQ(write(Rule()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1026, 1198));
    EXPECT_EQ(value(1198), "0");
    Rule rule;
    EXPECT_EQ(read(rule), -1) << "cannot be read without the required string";
}

TEST_F(QelFirewallRuleRecordTest, DropsSecondPortWithoutFirst) {
    Rule rule = fullRule();
    rule.sourcePorts = {.first = -1, .second = 80};
    const Rule back = roundTrip(rule);
    EXPECT_NE(message.seekPresence(1201), 0);
    EXPECT_EQ(back.sourcePorts, (Rule::PortRange{.first = -1, .second = -1}));
}

TEST_F(QelFirewallRuleRecordTest, DropsMaskWithoutAddress) {
    Rule rule = fullRule();
    rule.source = {.address = "", .mask = "255.0.0.0"};
    EXPECT_EQ(roundTrip(rule).source, Rule::NetAddress());
    EXPECT_NE(message.seekPresence(1199), 0);
}

TEST_F(QelFirewallRuleRecordTest, RequiresNameAndFirstString) {
    Rule rule;
    put(1195, "tcp");
    EXPECT_EQ(read(rule), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("(name) is missing"));
    newElement();
    put(1026, "web");
    EXPECT_EQ(read(rule), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("(text1195) is missing"));
}

TEST_F(QelFirewallRuleRecordTest, MissingOptionalFieldsAreUnchanged) {
    put(1026, "ssh");
    put(1195, "udp");
    Rule rule = fullRule();
    EXPECT_EQ(read(rule), 0);
    Rule expected = fullRule();
    expected.name = "ssh";
    expected.text1195 = "udp";
    EXPECT_EQ(rule, expected);
}

TEST_F(QelFirewallRuleRecordTest, IgnoresMalformedFlag) {
    put(1026, "ssh");
    put(1195, "tcp");
    put(1198, "perhaps");
    Rule rule = fullRule();
    EXPECT_EQ(read(rule), 0);
    EXPECT_TRUE(rule.flag1198);
}

TEST_F(QelFirewallRuleRecordTest, RejectsMalformedAddressOrPorts) {
    const auto expectFailure = [this](int part, int id, const std::string& text) {
        newElement();
        put(1026, "ssh");
        put(1195, "tcp");
        putIn(part, id, text);
        Rule rule;
        EXPECT_EQ(read(rule), -1) << part;
    };
    expectFailure(1199, 1069, "255.0.0.0"); // missing address
    expectFailure(1200, 1069, "255.0.0.0");
    expectFailure(1201, 1194, "80"); // missing first port
    expectFailure(1202, 1194, "80");
    expectFailure(1201, 1193, "http");
}

TEST_F(QelFirewallRuleRecordTest, IgnoresMalformedSecondPort) {
    put(1193, "80");
    Rule::PortRange ports{.first = 1, .second = 2};
    EXPECT_EQ(read(ports), 0);
    EXPECT_EQ(ports, (Rule::PortRange{.first = 80, .second = 2})) << "a missing one is unchanged";
    put(1194, "http");
    EXPECT_EQ(read(ports), 0);
    EXPECT_EQ(ports, (Rule::PortRange{.first = 80, .second = 2}));
}

} // namespace
} // namespace Qel
