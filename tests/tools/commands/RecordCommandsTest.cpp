#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelLimits.h"
#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelNames.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class RecordCommandsTest : public ToolTest {
protected:
    [[nodiscard]] static ToolRun rewrite(const std::string& type, const std::string& record) {
        return runTool({"record", "rewrite", type, "-"}, "<message>" + record + "</message>");
    }
};

TEST_F(RecordCommandsTest, ListPrintsEveryRecordType) {
    const ToolRun run = runTool({"record", "list", "--json"});
    EXPECT_EQ(run.code, ExitCode::success);
    const Json list = Json::parse(run.out);
    EXPECT_EQ(list.size(), Qel::recordTypes().size());
    const Json expected{{"name", "QelOS"}, {"namespace", 292}, {"type", 117}};
    EXPECT_NE(std::find(list.begin(), list.end(), expected), list.end());
}

TEST_F(RecordCommandsTest, ListTableNamesIds) {
    const ToolRun run = runTool({"record", "list"});
    EXPECT_THAT(run.out, testing::ContainsRegex("\nQelOS +292 env +117 os\n"));
    EXPECT_THAT(run.out, testing::ContainsRegex("\nQelQoS +- +-\n"));
}

TEST_F(RecordCommandsTest, DescribePrintsFieldsInWriteOrder) {
    const ToolRun run = runTool({"record", "describe", "QelQoS"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "QelQoS, namespace -, type -\n"
                       "write  read  field      elements         kind                    on read   on write\n"
                       "    1     1  id         1010 id          text                    required  always\n"
                       "    2     2  hardLimit  1067 hard_limit  long integer            required  always\n"
                       "    3     3  softLimit  1066 soft_limit  long integer, or unset  ignored   ifSet\n");
}

TEST_F(RecordCommandsTest, DescribeJsonHasAllColumns) {
    const Json described = Json::parse(runTool({"record", "describe", "QelEnv", "--json"}).out);
    EXPECT_EQ(described["name"], "QelEnv");
    EXPECT_EQ(described["namespace"], 292);
    EXPECT_EQ(described["type"], 122);
    const Json eid{{"field", "eid"},      {"id", 1866},      {"kind", "custom: record QelEID"},
                   {"mayBeUnset", false}, {"form", "plain"}, {"read", "required"},
                   {"write", "always"},   {"writeOrder", 2}, {"readOrder", 4}};
    EXPECT_EQ(described["fields"][1], eid);
}

TEST_F(RecordCommandsTest, DescribePrintsGroupMembersBelowGroup) {
    const ToolRun run = runTool({"record", "describe", "QelProcessMExecParams"});
    EXPECT_THAT(run.out,
                testing::ContainsRegex("\n +3 +3 +streams +1395 stdio +group +optional +always\n"
                                       " +3\\.1 +3\\.1 +stdinData +1395 stdio / 1054 input +text, as base64 "));
    const Json described = Json::parse(runTool({"record", "describe", "QelProcessMExecParams", "--json"}).out);
    const Json& group = described["fields"][2];
    EXPECT_EQ(group["kind"], "group");
    EXPECT_EQ(group["fields"].size(), 4U);
    EXPECT_EQ(group["fields"][1]["field"], "wantStdout");
}

TEST_F(RecordCommandsTest, DescribeReportsIgnoredConfigurationElements) {
    const Json described = Json::parse(runTool({"record", "describe", "QelEnvConfig", "--json"}).out);
    EXPECT_FALSE(described["fields"].empty());
    for (const Json& field : described["fields"])
        EXPECT_EQ(field["read"], "ignored") << field;
}

TEST_F(RecordCommandsTest, DescribePrintsElementOfListItems) {
    EXPECT_THAT(runTool({"record", "describe", "QelGroup"}).out,
                testing::ContainsRegex("members +1025 user / 1026 name +set of text "));
}

TEST_F(RecordCommandsTest, EveryTypeCanBeDescribed) {
    for (const Qel::QelRecordType& type : Qel::recordTypes()) {
        const std::string name(type.name);
        const ToolRun text = runTool({"record", "describe", name});
        EXPECT_EQ(text.code, ExitCode::success);
        EXPECT_THAT(text.out, StartsWith(name + ", namespace "));
        const Json described = Json::parse(runTool({"record", "describe", name, "--json"}).out);
        EXPECT_EQ(described["fields"].is_null(), type.layout == nullptr) << name;
    }
}

TEST_F(RecordCommandsTest, DescribeReportsTypeWithoutTable) {
    EXPECT_EQ(runTool({"record", "describe", "QelEID"}).out,
              "QelEID, namespace -, type -\nNo table; read and written by custom code.\n");
}

TEST_F(RecordCommandsTest, UnknownTypeIsReported) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"record", "describe", "QelNothing"}, {"record", "rewrite", "QelNothing", "-"}}) {
        const ToolRun run = runTool(command);
        EXPECT_EQ(run.code, ExitCode::negative);
        EXPECT_EQ(run.err, "qel: unknown record type 'QelNothing'; see `qel record list`\n");
    }
}

TEST_F(RecordCommandsTest, RewriteKeepsElementId) {
    const ToolRun run = rewrite("QelQoS", "<e1900><soft_limit>1</soft_limit><what>else</what><id>cpu</id>"
                                          "<hard_limit>2</hard_limit></e1900><data/>");
    EXPECT_EQ(run.code, ExitCode::success);
    const std::string element = Qel::QelNames::elementName(1900);
    EXPECT_THAT(run.out, HasSubstr("\n  <" + element +
                                   ">\n    <id>cpu</id>\n    <hard_limit>2</hard_limit>\n"
                                   "    <soft_limit>1</soft_limit>\n  </" +
                                   element + ">\n</message>\n"));
}

TEST_F(RecordCommandsTest, RewriteReproducesSecurityExamples) {
    for (const auto& [type, name] : {std::pair("QelSession", "session"), std::pair("QelDirRealm", "directory-realm")}) {
        const std::string file = std::string(QEL_EXAMPLES "/security/") + name + ".xml";
        const ToolRun run = runTool({"record", "rewrite", type, file});
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        const auto elements = [](const std::string& text) { return text.substr(text.find("\n  <")); };
        EXPECT_EQ(elements(run.out), elements(read(file)));
    }
}

TEST_F(RecordCommandsTest, RewriteWritesElementType) {
    const ToolRun run = rewrite("QelOS", "<os><name>Linux</name></os>");
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, HasSubstr("xsi:type=\"env:os\""));
}

TEST_F(RecordCommandsTest, RewriteKeepsElementNameWithoutId) {
    EXPECT_THAT(rewrite("QelEnvStatus", "<my_status><state>4</state></my_status>").out, HasSubstr("<my_status "));
}

TEST_F(RecordCommandsTest, UnreadableRecordIsBadInput) {
    const ToolRun run = rewrite("QelQoS", "<qos><id>cpu</id></qos>");
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_THAT(run.err, StartsWith("qel: QelQoS: reader returned -1 for standard input: "));
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(RecordCommandsTest, ReferencePagesHaveModeOfUmask) {
    const mode_t mask = umask(022);
    EXPECT_EQ(runTool({"record", "reference", path("pages")}).code, ExitCode::success);
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(path("pages/index.md").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

/// Rewrites a record that must be rejected before its reader, which would abort the process.
void expectRejected(const std::string& type, const std::string& record, const std::string& reason) {
    const ToolRun run = runTool({"record", "rewrite", type, "-"},
                                "<message xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                "xmlns:res=\"urn:qel:" +
                                    Qel::QelNames::namespaceName(281) + "\">" + record + "</message>");
    EXPECT_EQ(run.code, ExitCode::badInput) << record;
    EXPECT_EQ(run.err, "qel: standard input: " + reason + '\n') << record;
    EXPECT_THAT(run.out, IsEmpty()) << record;
}

TEST_F(RecordCommandsTest, RejectsLongVocabularyName) {
    const std::string name = "<" + Qel::QelNames::elementName(1026) + ">";
    const std::string nameEnd = "</" + Qel::QelNames::elementName(1026) + ">";
    const std::string version = "<" + Qel::QelNames::elementName(1223) + ">";
    const std::string versionEnd = "</" + Qel::QelNames::elementName(1223) + ">";
    const auto id = [&](std::size_t nameLength, std::size_t versionLength) {
        return "<v>" + name + std::string(nameLength, 'n') + nameEnd + version + std::string(versionLength, 'v') +
               versionEnd + "</v>";
    };
    EXPECT_EQ(rewrite("QelVocID", id(255, 255)).code, ExitCode::success);
    expectRejected("QelVocID", id(256, 1), "the name is too long");
    expectRejected("QelVocID", id(1, 256), "the version is too long");
}

TEST_F(RecordCommandsTest, RejectsAddressForbiddenInPool) {
    const std::string pool = Qel::QelNames::elementName(1974);
    const std::string address = Qel::QelNames::elementName(1262);
    const std::string typed = pool + " xmlns=\"urn:qel:" + Qel::QelNames::namespaceName(281) +
                              "\" xsi:type=\"res:" + Qel::QelNames::typeName(250) + "\"";
    for (const char* const value : {"0.0.0.0", "255.255.255.255", "", "0", "4294967295", "none"}) {
        const std::string content = "<" + address + ">10.0.0.1</" + address + "><" + address + ">" + value + "</" +
                                    address + "></" + pool + ">";
        const std::string reason = std::string("no pool can hold the address '") + value + "'";
        for (const char* const type : {"QelResourceIpPool", "QelRangedPool"})
            expectRejected(type, "<" + pool + ">" + content, reason);
        expectRejected("QelPoolResourcePair", "<pair><" + typed + ">" + content + "</pair>", reason);
    }
}

TEST_F(RecordCommandsTest, TemplateInstanceIsKnownByAliasAndTemplateName) {
    for (const auto& [alias, name] :
         {std::pair("QelResourceIp", "QelRangedResource"), std::pair("QelResourceIpPool", "QelRangedPool")}) {
        const ToolRun described = runTool({"record", "describe", alias});
        EXPECT_EQ(described.code, ExitCode::success);
        EXPECT_THAT(described.out, StartsWith(std::string(alias) + ", namespace 281 "));
        EXPECT_EQ(runTool({"record", "describe", name}).out, described.out);
        const std::string list = runTool({"record", "list"}).out;
        EXPECT_THAT(list, HasSubstr(std::string("\n") + alias + ' '));
        EXPECT_EQ(list.find(name), std::string::npos);
    }
}

TEST_F(RecordCommandsTest, RewriteContinuesAfterInvalidFile) {
    const std::string good = write("good", std::string("<message><s><state>4</state></s></message>"));
    const std::string bad = write("bad", std::string("<message/>"));
    const ToolRun run = runTool({"record", "rewrite", "QelEnvStatus", path("none"), bad, good, good});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: " + path("none") + ": No such file or directory\nqel: " + bad + ": contains no record\n");
    EXPECT_EQ(run.out.find("<state>4</state>") == run.out.rfind("<state>4</state>"), false);
}

TEST_F(RecordCommandsTest, RewriteReturnsWorstExitCode) {
    const std::string good =
        write("good", std::string("<message><qos><id>a</id><hard_limit>1</hard_limit></qos></message>"));
    const std::string bad = write("bad", std::string("<message/>"));
    // Each character takes five bytes in text form, which exceeds the size limit of a message.
    const Qel::auto_destroy<Qel::QelMessage> message(new Qel::QelBinary);
    const std::unique_ptr<Qel::QelMessageIterator> cursor(message->rootIterator());
    cursor->newChild("qos");
    cursor->putValue(std::string(Qel::QelLimits::messageBytes / 5, '&'), "id");
    cursor->putValue(1, "hard_limit");
    std::string bytes;
    ASSERT_EQ(message->toBinary(bytes), 0);
    expectWorstExitCode({"record", "rewrite", "QelQoS"}, good, bad, write("large", bytes));
}

} // namespace
