#include <array>
#include <cstdio>
#include <map>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::HasSubstr;

/// The result and the output of xmllint.
struct Verdict {
    bool isValid;
    std::string text;
};

class RecordSchemaTest : public ToolTest {
protected:
    /// Writes the schema for some types and returns its path.
    [[nodiscard]] std::string schemaFor(std::vector<std::string> types) const {
        types.insert(types.begin(), {"record", "schema"});
        const ToolRun run = runTool(types);
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        return write("schema.rng", run.out);
    }

    [[nodiscard]] static Verdict validate(const std::string& schema, const std::string& file) {
        const std::string command = "xmllint --noout --relaxng '" + schema + "' '" + file + "' 2>&1";
        FILE* const pipe = popen(command.c_str(), "r");
        if (!pipe)
            return {false, "popen failed"};
        std::string text;
        std::array<char, 4096> part{};
        while (const std::size_t count = fread(part.data(), 1, part.size(), pipe))
            text.append(part.data(), count);
        const int status = pclose(pipe);
        return {WIFEXITED(status) && WEXITSTATUS(status) == 0, text.substr(0, 2000)};
    }

    void expectValid(const std::string& schema, const std::string& file) const {
        const Verdict verdict = validate(schema, file);
        EXPECT_TRUE(verdict.isValid) << verdict.text;
    }

    /// True if a message with this content satisfies the schema.
    [[nodiscard]] bool accepts(const std::string& schema, const std::string& content) const {
        const std::string text = "<message xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                 "xmlns:env=\"urn:qel:env\" xmlns:linux_package=\"urn:qel:linux_package\">" +
                                 content + "</message>";
        return validate(schema, write("message.xml", text)).isValid;
    }
};

/// The arguments of `qel record schema` for an example, selected by its name or directory.  Other examples may contain
/// any record with a table.
std::vector<std::string> typesOf(const std::filesystem::path& example) {
    static const std::map<std::string, std::vector<std::string>> known{
        {"agent.conf", {"QelConfiguration"}},    {"monitor-report.xml", {"QelMonitorData"}},
        {"vocabularies", {"QelVocPrototype"}},   {"messages", {"environment=QelEnv"}},
        {"schedules", {"data=QelScheduleTask"}},
    };
    for (const std::filesystem::path& place : {example, example.parent_path()})
        if (const auto found = known.find(place.string()); found != known.end())
            return found->second;
    std::vector<std::string> all;
    for (const Qel::QelRecordType& type : Qel::recordTypes())
        if (type.layout)
            all.emplace_back(type.name);
    return all;
}

TEST_F(RecordSchemaTest, ExamplesSatisfyTheSchemasOfTheirRecords) {
    const std::filesystem::path examples(QEL_EXAMPLES);
    int validated = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(examples)) {
        const std::string extension = entry.path().extension().string();
        if (extension != ".xml" && extension != ".conf")
            continue;
        SCOPED_TRACE(entry.path().string());
        const std::vector<std::string> types = typesOf(std::filesystem::relative(entry.path(), examples));
        expectValid(schemaFor(types), entry.path().string());
        expectValid(schemaFor({}), entry.path().string());
        ++validated;
    }
    EXPECT_GT(validated, 5);
}

TEST_F(RecordSchemaTest, ReportOfThisHostSatisfiesTheSchemaOfItsParts) {
    const ToolRun report = runTool({"host", "report"});
    ASSERT_EQ(report.code, ExitCode::success);
    const std::string schema =
        schemaFor({"system_info=QelSystemInfo", "load_averages=QelLoadAvg", "network=QelNetwork", "disks=QelDisk",
                   "processes=QelProcessList", "user=QelUser", "group=QelGroup"});
    expectValid(schema, write("report.xml", report.out));
}

TEST_F(RecordSchemaTest, AcceptsElementsInAnyOrderAndRejectsUnknownOnes) {
    const std::string schema = schemaFor({"QelQoS"});
    EXPECT_TRUE(accepts(schema, "<qos><id>cpu</id><hard_limit>2</hard_limit></qos>"));
    EXPECT_TRUE(accepts(schema, "<x><soft_limit>1</soft_limit><hard_limit>2</hard_limit><id>cpu</id></x><y><id/>"
                                "<hard_limit>-1</hard_limit></y>"));
    EXPECT_FALSE(accepts(schema, "<qos><id>cpu</id></qos>")) << "hard_limit is required";
    EXPECT_FALSE(accepts(schema, "<qos><id>cpu</id><hard_limit>much</hard_limit></qos>"));
    EXPECT_FALSE(accepts(schema, "<qos><id>cpu</id><hard_limit>2</hard_limit><colour/></qos>"));
    EXPECT_FALSE(accepts(schema, "<qos><id>cpu</id><id>cpu</id><hard_limit>2</hard_limit></qos>"));
}

TEST_F(RecordSchemaTest, RestrictsTypeToNamedElement) {
    const std::string schema = schemaFor({"qos=QelQoS", "os=QelOS"});
    EXPECT_TRUE(accepts(schema, "<os xmlns=\"urn:qel:env\" xsi:type=\"env:os\"><name>Linux</name></os>"));
    EXPECT_TRUE(accepts(schema, "<qos><id>cpu</id><hard_limit>2</hard_limit></qos><os><name>Linux</name></os>"));
    EXPECT_FALSE(accepts(schema, "<os><id>cpu</id><hard_limit>2</hard_limit></os>"));
    EXPECT_FALSE(accepts(schema, "<other><name>Linux</name></other>"));
    EXPECT_FALSE(accepts(schema, "<os xmlns=\"urn:qel:alert\"><name>Linux</name></os>"));
    EXPECT_FALSE(accepts(schema, "<os xsi:type=\"env:env\"><name>Linux</name></os>")) << "another record's type";
}

TEST_F(RecordSchemaTest, WithoutTypesTheComplexTypeDeterminesTheContent) {
    const std::string schema = schemaFor({});
    EXPECT_TRUE(accepts(schema, "<anything a=\"b\">text<more/></anything>"));
    EXPECT_TRUE(accepts(schema, "<any xsi:type=\"env:env_status\"><state>1</state></any>"));
    EXPECT_FALSE(accepts(schema, "<any xsi:type=\"env:env_status\"><state>up</state></any>"));
    EXPECT_FALSE(accepts(schema, "<any xsi:type=\"env:unheard_of\"><state>1</state></any>"));
}

TEST_F(RecordSchemaTest, ComplexTypeSelectsTheDerivedRecord) {
    const std::string schema = schemaFor({"QelInstallationPackage"});
    const auto package = [](const std::string& type, const std::string& content) {
        return "<x><package" + (type.empty() ? "" : " xsi:type=\"" + type + '"') + ">" + content + "</package></x>";
    };
    EXPECT_TRUE(accepts(schema, package("linux_package:package_rpm", "<name>bash</name><path>Lw==</path>")));
    EXPECT_TRUE(accepts(schema, package("env:package", "<name>bash</name>")));
    EXPECT_TRUE(accepts(schema, package("", "<name>bash</name>"))) << "the default class";
    EXPECT_FALSE(accepts(schema, package("env:package", "<name>bash</name><path>Lw==</path>")));
    EXPECT_FALSE(accepts(schema, package("env:os", "<name>bash</name>"))) << "not a class of the family";
}

TEST_F(RecordSchemaTest, ValidatesGroupsFlagsAndLists) {
    const std::string exec = schemaFor({"QelProcessMExecParams"});
    const std::string credentials =
        "<credentials><credential_flags>0</credential_flags><login/><secret/></credentials>";
    EXPECT_TRUE(
        accepts(exec, "<x><option>bHM=</option><option/><stdio><input/><output/></stdio>" + credentials + "</x>"));
    EXPECT_FALSE(accepts(exec, "<x><stdio><input/><output>text</output></stdio>" + credentials + "</x>"));
    EXPECT_FALSE(accepts(exec, "<x><input/>" + credentials + "</x>")) << "belongs in the group";
    const std::string group = schemaFor({"QelGroup"});
    EXPECT_TRUE(accepts(group, "<x><gid>7</gid><user><name>me</name></user><user><name>you</name></user></x>"));
    EXPECT_FALSE(accepts(group, "<x><gid>7</gid><user>me</user></x>"));
}

TEST_F(RecordSchemaTest, EverySchemaIsValidAndAcceptsEmptyMessage) {
    for (const Qel::QelRecordType& type : Qel::recordTypes()) {
        SCOPED_TRACE(type.name);
        const std::string schema = schemaFor({std::string(type.name)});
        const Verdict verdict = validate(schema, write("message.xml", std::string("<message/>")));
        EXPECT_TRUE(verdict.isValid) << verdict.text;
    }
}

TEST_F(RecordSchemaTest, RejectsUnknownTypeAndEmptyName) {
    EXPECT_EQ(runTool({"record", "schema", "QelNothing"}).code, ExitCode::negative);
    EXPECT_EQ(runTool({"record", "schema", "x=QelNothing"}).code, ExitCode::negative);
    EXPECT_EQ(runTool({"record", "schema", "=QelOS"}).code, ExitCode::usage);
}

class RecordReferenceTest : public ToolTest {};

TEST_F(RecordReferenceTest, IndexLinksToThePageOfEachType) {
    const std::string folder = path("reference/records");
    EXPECT_EQ(runTool({"record", "reference", folder}).code, ExitCode::success);
    const std::string index = read(folder + "/index.md");
    std::size_t pages = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string file = entry.path().filename().string();
        if (file != "index.md") {
            EXPECT_THAT(index, HasSubstr("](" + file + ")"));
        }
        ++pages;
    }
    EXPECT_EQ(pages, Qel::recordTypes().size() + 1);
}

TEST_F(RecordReferenceTest, PageContainsTableAndLinksToNeighbours) {
    EXPECT_EQ(runTool({"record", "reference", path("")}).code, ExitCode::success);
    const std::string os = read(path("QelOS.md"));
    EXPECT_THAT(os, HasSubstr("# QelOS\n\nNamespace 292 env, type 117 os.\n"));
    EXPECT_THAT(os, HasSubstr("| 4 | 4 | `osName` | 1026 name | text, or unset | required | always |\n"));
    EXPECT_THAT(os, HasSubstr("\nContained in: "));
    EXPECT_THAT(os, HasSubstr("[QelSystemInfo](QelSystemInfo.md)"));
    const std::string system = read(path("QelSystemInfo.md"));
    EXPECT_THAT(system, HasSubstr("| 3.8 | 3.8 | `name` | 1229 cpu / 1026 name | text | required | always |\n"));
    EXPECT_THAT(system, HasSubstr("\nContains: [QelOS](QelOS.md), [QelUsageStats](QelUsageStats.md).\n"));
    EXPECT_THAT(read(path("QelTopData.TopSet.md")), HasSubstr("read and written by custom code"));
}

TEST_F(RecordReferenceTest, FailsIfDirectoryCannotBeCreated) {
    const ToolRun run = runTool({"record", "reference", write("file", std::string()) + "/below"});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_THAT(run.err, HasSubstr("Not a directory"));
}

} // namespace
