#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string report = QEL_EXAMPLES "/monitor-report.xml";
const std::string vocabularies = QEL_EXAMPLES "/vocabularies/several.xml";

class PerfCommandsTest : public ToolTest {
protected:
    static void expect(const ToolRun& run, ExitCode code, const std::string& error) {
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.err, "qel: " + error + "\n");
        EXPECT_THAT(run.out, IsEmpty());
    }
    /// Writes the example with one string replaced.
    [[nodiscard]] std::string changed(const std::string& from, const std::string& to) const {
        std::string text = read(report);
        text.replace(text.find(from), from.size(), to);
        return write("changed", text);
    }
};

TEST_F(PerfCommandsTest, ShowPrintsTableWithVocabularyTypes) {
    const ToolRun run = runTool({"perf", "show", report, "--voc", vocabularies});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_EQ(run.out, "environment  7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11\n"
                       "from         2026-11-20T11:30:00+01:00\n"
                       "to           2026-11-20T11:35:00+01:00\n"
                       "\n"
                       "subsystem  instance  counter          current  stat_1060  stat_1061  stat_1062\n"
                       "cpu        cpu0      cpu_load            0.75        0.5       0.25          1\n"
                       "cpu        cpu0      cpu_seconds        86400        150         75        300\n"
                       "cpu        cpu1      cpu_load          0.0625      0.125          0        0.5\n"
                       "network    eth0      bytes_in     73014444032    1048576          0    9437184\n");
}

TEST_F(PerfCommandsTest, ShowJsonHasTypes) {
    const ToolRun run = runTool({"perf", "show", "-", "--voc", vocabularies, "--json"}, read(report));
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    const Json document = Json::parse(run.out);
    EXPECT_EQ(document["environment"], "7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11");
    EXPECT_EQ(document["to"], "2026-11-20T11:35:00+01:00");
    ASSERT_EQ(document["counters"].size(), 4U);
    EXPECT_EQ(document["counters"][0], Json::parse(R"({"subsystem":"cpu","instance":"cpu0","counter":"cpu_load",
        "type":"double","current":0.75,"stat_1060":0.5,"stat_1061":0.25,"stat_1062":1.0})"));
    EXPECT_EQ(document["counters"][3]["type"], "integer");
    EXPECT_EQ(document["counters"][3]["current"], 73014444032);
}

TEST_F(PerfCommandsTest, FloatingPointValueWithoutVocabularyIsBadInput) {
    expect(runTool({"perf", "show", report}), ExitCode::badInput,
           report + ": cannot read QelMonitorData: cpu / cpu0 / cpu_load has no readable values");
    const std::string integers = write(
        "integers", std::string("<message><data><eid>7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11</eid><interval><start_time>0"
                                "</start_time><end_time>5</end_time></interval></data></message>"));
    const ToolRun run = runTool({"perf", "show", integers});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_EQ(run.out, "environment  7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11\n"
                       "from         1970-01-01T00:00:00+00:00\n"
                       "to           1970-01-01T00:00:05+00:00\n");
}

TEST_F(PerfCommandsTest, NonReportIsBadInput) {
    const std::string none = write("none", std::string("<message/>"));
    expect(runTool({"perf", "show", none}), ExitCode::badInput, none + ": empty message");
    expect(runTool({"perf", "show", vocabularies}), ExitCode::badInput,
           vocabularies + ": cannot read QelMonitorData: no readable identifier of the environment");
    const std::string noEnd = changed("<end_time>2026-11-20T11:35:00+01:00</end_time>", "");
    expect(runTool({"perf", "show", noEnd}), ExitCode::badInput,
           noEnd + ": cannot read QelMonitorData: no readable interval");
    expect(runTool({"perf", "show", path("missing")}), ExitCode::badInput,
           path("missing") + ": No such file or directory");
}

TEST_F(PerfCommandsTest, VocabulariesMustBeMap) {
    const std::string single = QEL_EXAMPLES "/vocabularies/qelagent.voc.linux";
    expect(runTool({"perf", "show", report, "--voc", single}), ExitCode::badInput,
           single + ": an unnamed vocabulary, not a map; use `qel voc merge` to create a map");
    expect(runTool({"perf", "show", report, "--voc", report}), ExitCode::badInput, report + ": contains no vocabulary");
}

TEST_F(PerfCommandsTest, ReportsValueBlockOfWrongLength) {
    // In base64, 128 bytes are 171 characters and one '=', 127 bytes are 170 characters and two.
    const auto block = [&](int characters, const char* padding) {
        return write("block", "<message><data><id>" + std::string(static_cast<std::size_t>(characters), 'A') + padding +
                                  "</id></data></message>");
    };
    EXPECT_EQ(runTool({"record", "rewrite", "QelPerfMonActualValue", block(171, "=")}).code, ExitCode::success);
    const ToolRun run = runTool({"record", "rewrite", "QelPerfMonHistoricalValue", block(170, "==")});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_THAT(run.err, HasSubstr("a value block has 128 bytes, not 127"));
}

} // namespace
