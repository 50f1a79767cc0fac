#include <gmock/gmock.h>

#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::HasSubstr;
using testing::IsEmpty;

class PoolCommandsTest : public ToolTest {
protected:
    void SetUp() override { file = write("pool.xml", read(QEL_EXAMPLES "/network/pool.xml")); }

    [[nodiscard]] ToolRun add(std::vector<std::string> ranges) const {
        ranges.insert(ranges.begin(), {"pool", "add", file});
        return runTool(ranges);
    }
    [[nodiscard]] std::string shown() const { return runTool({"pool", "show", file, "--json"}).out; }

    /// Writes a message whose pool element has this content.
    [[nodiscard]] std::string writePool(const std::string& content) const {
        return write("other.xml", "<message><pool>" + content + "</pool></message>");
    }
    void expect(const ToolRun& run, ExitCode code, const std::string& error) const {
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.err, "qel: " + error + "\n");
        EXPECT_THAT(run.out, IsEmpty());
    }

    std::string file;
};

TEST_F(PoolCommandsTest, ShowPrintsRangesAndAddressCounts) {
    const ToolRun run = runTool({"pool", "show", file});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "first        last         addresses\n"
                       "10.0.0.1     10.0.0.9             9\n"
                       "10.0.0.11    10.0.0.11            1\n"
                       "192.0.2.100  192.0.2.199        100\n"
                       "110 addresses in 3 ranges\n");
}

TEST_F(PoolCommandsTest, ShowJsonIsOneLine) {
    EXPECT_EQ(shown(), "{\"ranges\":[[\"10.0.0.1\",\"10.0.0.9\"],[\"10.0.0.11\",\"10.0.0.11\"],"
                       "[\"192.0.2.100\",\"192.0.2.199\"]],\"count\":110}\n");
}

TEST_F(PoolCommandsTest, ShowReadsUntypedPoolFromStandardInput) {
    const ToolRun run = runTool({"pool", "show", "-", "--json"}, "<message><pool><ip>10.0.0.1</ip></pool></message>");
    EXPECT_EQ(run.out, "{\"ranges\":[[\"10.0.0.1\",\"10.0.0.1\"]],\"count\":1}\n");
    EXPECT_EQ(runTool({"pool", "show", "-"}, "<message><pool/></message>").out,
              "first  last  addresses\n0 addresses in 0 ranges\n");
}

TEST_F(PoolCommandsTest, ShowCountsMoreThan31BitsOfAddresses) {
    file = writePool("<range><start>0.0.0.1</start><end>255.255.255.254</end></range>");
    EXPECT_THAT(shown(), HasSubstr("\"count\":4294967294}"));
}

TEST_F(PoolCommandsTest, AddMergesAdjacentRanges) {
    EXPECT_EQ(add({"10.0.0.10"}).code, ExitCode::success);
    EXPECT_EQ(shown(), "{\"ranges\":[[\"10.0.0.1\",\"10.0.0.11\"],[\"192.0.2.100\",\"192.0.2.199\"]],\"count\":111}\n");
    EXPECT_EQ(add({"9.0.0.1-10.0.0.5", "255.255.255.254", "0.0.0.1-0.0.0.1"}).code, ExitCode::success);
    EXPECT_THAT(shown(), HasSubstr("[[\"0.0.0.1\",\"0.0.0.1\"],[\"9.0.0.1\",\"10.0.0.11\"],"));
}

TEST_F(PoolCommandsTest, AddCreatesMissingFile) {
    file = path("new.xml");
    const ToolRun run = add({"10.0.0.1-10.0.0.9"});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(shown(), "{\"ranges\":[[\"10.0.0.1\",\"10.0.0.9\"]],\"count\":9}\n");
    EXPECT_EQ(runTool({"record", "rewrite", "QelResourceIpPool", file}).out, read(file)) << "the record is complete";
}

TEST_F(PoolCommandsTest, AddKeepsOtherElements) {
    file = write("other.xml", std::string("<message request-id=\"7\"><pool><name>front</name><ip>10.0.0.1</ip></pool>"
                                          "<data/></message>"));
    EXPECT_EQ(add({"10.0.0.2"}).code, ExitCode::success);
    const std::string content = read(file);
    for (const char* const part : {"request-id=\"7\"", ">front</name>", "<data />", ">resource_ip</type>"})
        EXPECT_THAT(content, HasSubstr(part));
    EXPECT_EQ(shown(), "{\"ranges\":[[\"10.0.0.1\",\"10.0.0.2\"]],\"count\":2}\n");
}

TEST_F(PoolCommandsTest, AddRejectsInvalidRangeAndChangesNothing) {
    const std::string before = read(file);
    const auto expectRejected = [this](const std::string& range, const std::string& error) {
        expect(add({"10.0.0.10", range}), ExitCode::usage, error);
    };
    expectRejected("0.0.0.0", "no pool can hold the address 0.0.0.0");
    expectRejected("0.0.0.0-10.0.0.1", "no pool can hold the address 0.0.0.0");
    expectRejected("10.0.0.1-255.255.255.255", "no pool can hold the address 255.255.255.255");
    expectRejected("10.0.0.9-10.0.0.1", "'10.0.0.9-10.0.0.1' ends before it starts");
    for (const char* const range : {"10.0.0", "2001:db8::1", "10.0.0.1-", "10.0.0.1-10.0.0.2-10.0.0.3", "10.0.0.0/24"})
        expectRejected(range, "'" + std::string(range) + "' is not an IPv4 address or a range FIRST-LAST");
    EXPECT_EQ(read(file), before);
}

TEST_F(PoolCommandsTest, PoolWithForbiddenAddressIsBadInput) {
    for (const char* const address : {"0.0.0.0", "255.255.255.255", "nowhere"}) {
        file = writePool("<ip>10.0.0.1</ip><ip>" + std::string(address) + "</ip>");
        const std::string error = file + ": no pool can hold the address '" + address + "'";
        expect(runTool({"pool", "show", file}), ExitCode::badInput, error);
        expect(add({"10.0.0.2"}), ExitCode::badInput, error);
    }
}

TEST_F(PoolCommandsTest, NonPoolIsBadInput) {
    expect(runTool({"pool", "show", writePool("<range><start>10.0.0.1</start></range>")}), ExitCode::badInput,
           path("other.xml") + ": /pool: cannot read QelResourceIpPool: element range (ranges) is malformed");
    expect(runTool({"pool", "show", write("empty", std::string("<message/>"))}), ExitCode::badInput,
           path("empty") + ": empty message");
    const std::string devices = QEL_EXAMPLES "/network/devices.xml";
    expect(runTool({"pool", "show", devices}), ExitCode::badInput,
           devices + ": element device has type env:net_device, which is not an address pool");
    EXPECT_EQ(runTool({"pool", "show", path("none")}).code, ExitCode::badInput);
}

} // namespace
