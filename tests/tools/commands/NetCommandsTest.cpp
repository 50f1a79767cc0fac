#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string example(const std::string& name) {
    return QEL_EXAMPLES "/network/" + name + ".xml";
}

class NetCommandsTest : public ToolTest {
protected:
    /// The IDs of the example devices that match a filter.
    static std::vector<std::string> matches(const std::string& filter) {
        const ToolRun run = runTool({"net", "match", example("devices"), filter, "--json"});
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        std::vector<std::string> ids;
        for (const Json& device : Json::parse(run.out))
            ids.push_back(device["id"]);
        return ids;
    }
    [[nodiscard]] std::string filter(const std::string& type, const std::string& content) const {
        return write("filter.xml", "<message xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                   "xmlns:env=\"urn:qel:env\" xmlns:network=\"urn:qel:network\"><device" +
                                       (type.empty() ? "" : " xsi:type=\"" + type + '"') + '>' + content +
                                       "</device></message>");
    }
    void expectBadInput(const std::vector<std::string>& files, const std::string& error) const {
        const ToolRun run = runTool({"net", "match", files[0], files[1]});
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_EQ(run.err, "qel: " + error + "\n");
        EXPECT_THAT(run.out, IsEmpty());
    }
};

TEST_F(NetCommandsTest, MatchListsMatchingDevices) {
    const ToolRun run = runTool({"net", "match", example("devices"), example("filter-slash-24")});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_EQ(run.out, "id       type                addresses\n"
                       "eth0     env:net_nic         192.0.2.10/24, 2001:db8::10/64\n"
                       "eth0.17  network:net_vlan    198.51.100.10/24\n"
                       "br0      network:net_bridge  203.0.113.1/24\n");
}

TEST_F(NetCommandsTest, MatchJsonListsMatchingDevices) {
    const ToolRun run = runTool({"net", "match", example("devices"), example("filter-adapters"), "--json"});
    const Json expected{{{"id", "eth0"}, {"type", "env:net_nic"}, {"addresses", {"192.0.2.10/24", "2001:db8::10/64"}}},
                        {{"id", "eth1"}, {"type", "env:net_nic"}, {"addresses", Json::array({"10.1.0.10/16"})}}};
    EXPECT_EQ(Json::parse(run.out), expected);
}

TEST_F(NetCommandsTest, EachFilterFieldIsACondition) {
    EXPECT_THAT(matches(filter("", "")), ElementsAre("lo", "eth0", "eth1", "eth0.17", "br0"));
    EXPECT_THAT(matches(filter("env:net_device", "<device_text_2048>b2ZmaWNl</device_text_2048>")),
                ElementsAre("eth0", "br0"));
    EXPECT_THAT(matches(filter("network:net_vlan", "<vlan_text_2051>eth0</vlan_text_2051>")), ElementsAre("eth0.17"));
    EXPECT_THAT(matches(filter("network:net_bridge", "<id>br0</id>")), ElementsAre("br0"));
}

TEST_F(NetCommandsTest, NoMatchPrintsEmptyList) {
    EXPECT_THAT(matches(filter("", "<id>wlan0</id>")), IsEmpty());
    EXPECT_EQ(runTool({"net", "match", example("devices"), filter("", "<id>wlan0</id>")}).out, "id  type  addresses\n");
}

TEST_F(NetCommandsTest, NonDeviceIsBadInput) {
    const std::string pool = example("pool");
    expectBadInput({pool, example("filter-adapters")},
                   pool + ": element pool has type resource:ip_resource_pool, which is not a network device");
    const std::string bad = filter("", "<status/>");
    expectBadInput({example("devices"), bad},
                   bad + ": /device: cannot read QelNetDevice: element status (kind) is malformed");
    EXPECT_THAT(runTool({"net", "match", path("none"), bad}).err, HasSubstr("none"));
}

TEST_F(NetCommandsTest, FilterMustBeOneDevice) {
    expectBadInput({example("devices"), example("devices")},
                   example("devices") + ": expected one device as the filter, found 5");
    const std::string empty = write("empty.xml", std::string("<message/>"));
    expectBadInput({example("devices"), empty}, empty + ": expected one device as the filter, found 0");
}

TEST_F(NetCommandsTest, RewriteReproducesSingleRecordExamples) {
    const std::pair<const char*, const char*> records[] = {
        {"filter-adapters", "QelNetNIC"}, {"filter-slash-24", "QelNetDevice"},
        {"pool", "QelResourceIpPool"},    {"named-pool", "QelIPPool"},
        {"row-set", "QelRowSet"},
    };
    for (const auto& [name, type] : records) {
        const ToolRun rewritten = runTool({"record", "rewrite", type, example(name)});
        EXPECT_EQ(rewritten.code, ExitCode::success) << rewritten.err;
        EXPECT_EQ(rewritten.out, runTool({"message", "convert", example(name), "-", "--to=text"}).out);
    }
}

TEST_F(NetCommandsTest, FirewallExampleStartsWithRule) {
    const ToolRun run = runTool({"record", "rewrite", "QelFirewallRule", example("firewall-rules")});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_THAT(run.out, HasSubstr("<first_port>443</first_port>"));
}

} // namespace
