#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include "QelMessage/QelLimits.h"
#include "QelMessage/QelNames.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* sampleText = R"(<?xml version="1.0" encoding="UTF-8"?>
<message xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:env="urn:qel:env" time="2026-11-20T09:30:00Z" request-id="17" subscriptions="events_subscription">
  <e1624 xmlns="urn:qel:env" xsi:type="env:env"><name>  Größe &amp; more </name><log_level>3</log_level></e1624>
  <data encoding="base64">AAEC</data>
</message>
)";

class MessageCommandsTest : public ToolTest {
protected:
    void SetUp() override { sample = write("sample.xml", std::string(sampleText)); }

    /// Converts a message; expects success without output.
    void convert(const std::string& in, const std::string& out, const std::string& form) const {
        const ToolRun run = runTool({"message", "convert", in, out, "--to", form});
        EXPECT_EQ(run.code, ExitCode::success);
        EXPECT_EQ(run.out + run.err, "");
    }

    void expectBadInput(const std::string& content, const std::string& place) const {
        const std::string in = write("bad", content);
        const std::string out = write("out", std::string("precious"));
        const ToolRun run = runTool({"message", "convert", in, out, "--to", "text"});
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_THAT(run.err, StartsWith("qel: " + in + ": "));
        EXPECT_THAT(run.err, HasSubstr(place));
        EXPECT_EQ(read(out), "precious");
    }

    std::string sample;
};

TEST_F(MessageCommandsTest, ConvertRoundTrips) {
    convert(sample, path("text"), "text");
    convert(path("text"), path("binary"), "binary");
    convert(path("binary"), path("again"), "text");
    EXPECT_EQ(read(path("again")), read(path("text")));
    convert(path("again"), path("binary2"), "binary");
    EXPECT_EQ(read(path("binary2")), read(path("binary")));
    EXPECT_THAT(read(path("text")), HasSubstr("  Größe &amp; more "));
    EXPECT_THAT(read(path("text")), HasSubstr("request-id=\"17\""));
    EXPECT_NE(read(path("binary")), read(path("text")));
}

TEST_F(MessageCommandsTest, DashIsStandardInputAndOutput) {
    const ToolRun binary = runTool({"message", "convert", "-", "-", "--to", "binary"}, sampleText);
    EXPECT_EQ(binary.code, ExitCode::success);
    convert(sample, path("binary"), "binary");
    EXPECT_EQ(binary.out, read(path("binary")));
    const ToolRun text = runTool({"message", "convert", "-", "-", "--to=text"}, binary.out);
    EXPECT_EQ(text.code, ExitCode::success);
    EXPECT_THAT(text.out, StartsWith("<?xml"));
}

TEST_F(MessageCommandsTest, ConvertsInPlaceAndKeepsPermissions) {
    ASSERT_EQ(chmod(sample.c_str(), 0640), 0);
    convert(sample, sample, "binary");
    convert(sample, sample, "text");
    struct stat status {};
    ASSERT_EQ(stat(sample.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    EXPECT_THAT(read(sample), StartsWith("<?xml"));
}

TEST_F(MessageCommandsTest, ReplacesTargetOfSymbolicLink) {
    std::filesystem::create_symlink(sample, path("link"));
    convert(sample, path("link"), "binary");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(read(sample), read(path("link")));
}

TEST_F(MessageCommandsTest, DeviceIsWrittenNotReplaced) {
    convert(sample, "/dev/null", "text");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    const ToolRun run = runTool({"message", "convert", sample, "/dev/full", "--to", "text"});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_EQ(run.err, "qel: /dev/full: No space left on device\n");
}

TEST_F(MessageCommandsTest, MalformedInputIsReportedWithPositionAndWritesNothing) {
    expectBadInput("<message>\n<a></b></message>", "line 2");
    expectBadInput("", "line 1");
    expectBadInput("no message", "line 1");
}

TEST_F(MessageCommandsTest, TextWithNullByteIsMalformed) {
    expectBadInput(std::string("<message/>\0<rest/>", 18), "byte 10: null byte");
}

TEST_F(MessageCommandsTest, TruncatedBinaryMessageIsReportedWithOffset) {
    convert(sample, path("binary"), "binary");
    const std::string whole = read(path("binary"));
    expectBadInput(whole.substr(0, whole.size() - 1), "byte ");
    expectBadInput(whole.substr(0, 8), "byte ");
}

TEST_F(MessageCommandsTest, ErrorsNameStandardInput) {
    const ToolRun run = runTool({"message", "convert", "-", "-", "--to", "text"}, "<a>");
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_THAT(run.err, StartsWith("qel: standard input: "));
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(MessageCommandsTest, MissingInputIsBadInput) {
    const ToolRun run = runTool({"message", "convert", path("none"), "-", "--to", "text"});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: " + path("none") + ": No such file or directory\n");
}

TEST_F(MessageCommandsTest, TooLongInputIsBadInput) {
    const ToolRun run =
        runTool({"message", "convert", "-", "-", "--to", "text"}, std::string(Qel::QelLimits::messageBytes + 1, ' '));
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: standard input: longer than 67108864 bytes\n");
}

TEST_F(MessageCommandsTest, FailedWriteLeavesNoFiles) {
    for (const std::string& out : {path("none/out"), path("")}) {
        const ToolRun run = runTool({"message", "convert", sample, out, "--to", "text"});
        EXPECT_EQ(run.code, ExitCode::failed);
        EXPECT_THAT(run.err, StartsWith("qel: "));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path("")), {}), 1);
}

TEST_F(MessageCommandsTest, RejectsMissingOrUnknownForm) {
    EXPECT_EQ(runTool({"message", "convert", sample, "-"}).code, ExitCode::usage);
    const ToolRun run = runTool({"message", "convert", sample, "-", "--to", "json"});
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_EQ(run.err, "qel: invalid value 'json' for --to: expected text or binary\n");
}

TEST_F(MessageCommandsTest, NamesJsonHasThreeTables) {
    const ToolRun run = runTool({"message", "names", "--json"});
    EXPECT_EQ(run.code, ExitCode::success);
    const Json names = Json::parse(run.out);
    EXPECT_EQ(names.size(), 3U);
    EXPECT_EQ(names["elements"]["1026"], "name");
    EXPECT_EQ(names["namespaces"]["292"], "env");
    EXPECT_EQ(names["elements"].size(), Qel::QelNames::elements().size());
    EXPECT_EQ(names["namespaces"].size(), Qel::QelNames::namespaces().size());
    EXPECT_EQ(names["types"].size(), Qel::QelNames::types().size());
}

TEST_F(MessageCommandsTest, NamesTableAlignsIdsRight) {
    const ToolRun run = runTool({"message", "names"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, HasSubstr("\nelements    1026  name\n"));
    EXPECT_THAT(run.out, HasSubstr("\nnamespaces   292  env\n"));
}

} // namespace
