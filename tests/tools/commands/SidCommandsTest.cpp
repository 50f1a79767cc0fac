#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Json = nlohmann::json;

constexpr const char* agentEid = "3f6c1a2e-0b57-4c1d-9a3e-5d2f7b8c9e01";
constexpr const char* nobodyInHex = "010100000000000000000000";

/// Runs `sid` with --json and parses the output.
Json sidOf(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "sid");
    arguments.emplace_back("--json");
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    return Json::parse(run.out, nullptr, false);
}

void expectFailure(const std::vector<std::string>& arguments, ExitCode code, const std::string& error) {
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.code, code);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(run.err, "qel: " + error + '\n');
}

class SidCommandsTest : public ToolTest {};

TEST_F(SidCommandsTest, PrintsAllFormsOfText) {
    const ToolRun run = runTool({"sid", "S-1-5-7"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "text        S-1-5-7\n"
                       "binary      010100000000000507000000\n"
                       "well known  3 anonymous\n");
}

TEST_F(SidCommandsTest, PrintsJson) {
    EXPECT_EQ(runTool({"sid", "S-1-0-0", "--json"}).out, "{\n"
                                                         "  \"text\": \"S-1-0-0\",\n"
                                                         "  \"binary\": \"010100000000000000000000\",\n"
                                                         "  \"wellKnown\": [\n"
                                                         "    8\n"
                                                         "  ],\n"
                                                         "  \"local\": null\n"
                                                         "}\n");
}

TEST_F(SidCommandsTest, AcceptsHexadecimalInEitherCase) {
    EXPECT_EQ(sidOf({"--binary", nobodyInHex})["text"], "S-1-0-0");
    EXPECT_EQ(sidOf({"--binary", "0101000000000005aBcD0000"})["text"], "S-1-5-52651");
    EXPECT_EQ(sidOf({"--binary", "010101000000000500000000"})["text"], "S-1-0x010000000005-0");
}

TEST_F(SidCommandsTest, LocalPrincipalRoundTrips) {
    const Json made = sidOf({"--local", "7", "1", agentEid});
    EXPECT_EQ(made["local"], (Json{{"id", 7}, {"type", 1}, {"eid", agentEid}}));
    EXPECT_THAT(made["text"].get<std::string>(), testing::StartsWith("S-1-8193-"));
    EXPECT_EQ(sidOf({made["text"].get<std::string>()}), made);
    EXPECT_EQ(sidOf({"--binary", made["binary"].get<std::string>()}), made);
    EXPECT_THAT(runTool({"sid", "--local", "7", "1", agentEid}).out,
                HasSubstr("local id    7\nlocal type  1\nlocal eid   3f6c1a2e-0b57-4c1d-9a3e-5d2f7b8c9e01\n"));
}

TEST_F(SidCommandsTest, AgentOfAnyEnvironmentIsWellKnown) {
    EXPECT_EQ(sidOf({"--local", "0", "4", agentEid})["wellKnown"], Json::array({5}));
    EXPECT_EQ(sidOf({"--local", "0", "2", agentEid})["wellKnown"], Json::array());
    EXPECT_EQ(sidOf({"S-1-1000-0"})["wellKnown"], Json::array());
}

TEST_F(SidCommandsTest, ConfigurationDefinesLocalIdentifiers) {
    const std::string config = QEL_EXAMPLES "/agent.conf";
    EXPECT_EQ(sidOf({"--local", "0", "2", agentEid, "--config", config})["wellKnown"], Json::array({2}));
    EXPECT_THAT(sidOf({"--local", "0", "4", agentEid, "--config", config})["wellKnown"], testing::Contains(4));
    EXPECT_EQ(sidOf({"S-1-0-0", "--config", config})["wellKnown"], Json::array({8}));
    EXPECT_EQ(sidOf({"--local", "0", "2", agentEid})["wellKnown"], Json::array())
        << "the configuration is reset after the run";
}

TEST_F(SidCommandsTest, ConfigurationWithoutEidIsBadInput) {
    const std::string file = write("empty", std::string("<message/>"));
    expectFailure({"sid", "S-1-0-0", "--config", file}, ExitCode::badInput,
                  file + ": the configuration contains no agent EID");
    EXPECT_EQ(runTool({"sid", "S-1-0-0", "--config", path("none")}).code, ExitCode::badInput);
}

TEST_F(SidCommandsTest, MalformedTextIsBadInput) {
    for (const std::string text : {"", "S-1", "T-1-0-0", "S-1-5-4294967295"})
        expectFailure({"sid", text}, ExitCode::badInput, "'" + text + "' is not a security identifier");
    const std::string sixteen = "S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-15-16";
    expectFailure({"sid", sixteen}, ExitCode::badInput, "'" + sixteen + "' is not a security identifier");
}

TEST_F(SidCommandsTest, MalformedBinaryFormIsBadInput) {
    for (const std::string digits : {"", "01", "0201000000000000", "0102000000000000"})
        expectFailure({"sid", "--binary", digits}, ExitCode::badInput,
                      "'" + digits + "' is not a security identifier in binary form");
    for (const std::string digits : {"010", "xy"})
        expectFailure({"sid", "--binary", digits}, ExitCode::badInput, "'" + digits + "' is not hexadecimal");
}

TEST_F(SidCommandsTest, InputFormsAreMutuallyExclusive) {
    constexpr const char* text = "give a security identifier as TEXT, --binary or --local";
    expectFailure({"sid"}, ExitCode::usage, text);
    expectFailure({"sid", "S-1-0-0", "--binary", nobodyInHex}, ExitCode::usage, text);
    expectFailure({"sid", "--binary", nobodyInHex, "--local", "7", "1", agentEid}, ExitCode::usage, text);
}

TEST_F(SidCommandsTest, LocalRequiresNumberTypeAndEid) {
    constexpr const char* text = "--local requires a number, a type from 1 to 4 and an EID";
    expectFailure({"sid", "--local", "7", "1"}, ExitCode::usage, text);
    expectFailure({"sid", "--local", "7", "1", agentEid, "more"}, ExitCode::usage, text);
    for (const char* const id : {"", "x", "4294967296"})
        expectFailure({"sid", "--local", id, "1", agentEid}, ExitCode::usage, text);
    for (const char* const type : {"0", "5", "x"})
        expectFailure({"sid", "--local", "7", type, agentEid}, ExitCode::usage, text);
    expectFailure({"sid", "--local", "7", "1", "invalid"}, ExitCode::usage, text);
}

TEST_F(SidCommandsTest, SavesOptionsToFile) {
    const std::string file = path("options");
    const ToolRun first = runTool({"sid", "--local", "7", "1", agentEid, "--json", "--save-options", file});
    EXPECT_EQ(first.code, ExitCode::success) << first.err;
    EXPECT_EQ(runTool({"sid", "--options", file}).out, first.out);
}

} // namespace
