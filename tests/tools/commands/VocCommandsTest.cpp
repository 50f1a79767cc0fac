#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string several = QEL_EXAMPLES "/vocabularies/several.xml";
const std::string single = QEL_EXAMPLES "/vocabularies/qelagent.voc.linux";

/// A message with a map of one vocabulary.
std::string mapOf(const std::string& content) {
    return "<message><vocabulary>" + content + "</vocabulary></message>";
}
std::string parameter(const std::string& id, const std::string& value = {}) {
    return "<parameter><id>" + id + "</id>" + (value.empty() ? "" : "<data>" + value + "</data>") + "</parameter>";
}
std::string vocabulary(const std::string& name, const std::string& version, const std::string& content = {}) {
    return mapOf("<name>" + name + "</name>" + parameter("vocversion", version) + content);
}

class VocCommandsTest : public ToolTest {
protected:
    static ToolRun voc(std::vector<std::string> words, const std::string& input = {}) {
        words.insert(words.begin(), "voc");
        return runTool(words, input);
    }
    static void expect(const ToolRun& run, ExitCode code, const std::string& error) {
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.err, "qel: " + error + "\n");
    }
    /// Lists the vocabularies in a file as "NAME VERSION".
    static std::vector<std::string> vocabulariesIn(const std::string& file) {
        std::vector<std::string> names;
        for (const Json& each : Json::parse(voc({"list", file, "--json"}).out))
            names.push_back(each["name"].get<std::string>() + ' ' + each["version"].get<std::string>());
        return names;
    }
};

// ---- list

TEST_F(VocCommandsTest, ListPrintsCategoriesAndParametersByVocabulary) {
    const ToolRun run = voc({"list", several, "--restrict", "base"});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_EQ(run.out, "vocabulary  version  kind       id            categories       type     value\n"
                       "base        4.5      category   counter\n"
                       "base        4.5      category   cpu           hardware\n"
                       "base        4.5      category   memory        hardware\n"
                       "base        4.5      category   limit\n"
                       "base        4.5      parameter  vocversion                              4.5\n"
                       "base        4.5      parameter  cpu_load      counter, cpu     double\n"
                       "base        4.5      parameter  cpu_seconds   counter, cpu     integer\n"
                       "base        4.5      parameter  memory_free   counter, memory  integer\n"
                       "base        4.5      parameter  memory_limit  limit, memory             8589934592\n");
}

TEST_F(VocCommandsTest, ListPrintsSeveralFilesInOrder) {
    const Json all = Json::parse(voc({"list", single, several, "--json"}).out);
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[0]["file"], single);
    EXPECT_EQ(all[0]["name"], "") << "a single vocabulary has no name";
    EXPECT_EQ(all[0]["version"], "40500");
    EXPECT_EQ(all[0]["categories"].size(), 2U);
    EXPECT_EQ(all[0]["parameters"][2], Json::parse(R"({"id":"container_support","categories":["platform","service"],
        "type":null,"value":""})"));
    EXPECT_EQ(all[1]["name"], "base");
    EXPECT_EQ(all[1]["parameters"][1]["type"], "double");
    EXPECT_EQ(all[2]["version"], "1.2");
    EXPECT_EQ(all[3]["version"], "1.3");
}

TEST_F(VocCommandsTest, CategoriesRestrictList) {
    const ToolRun counters = voc({"list", several, "--category", "counter", "--category", "interface"});
    EXPECT_EQ(counters.out, "vocabulary  version  kind       id         categories          type     value\n"
                            "network     1.2      parameter  bytes_in   counter, interface  integer\n"
                            "network     1.2      parameter  bytes_out  counter, interface  integer\n"
                            "network     1.3      parameter  bytes_in   counter, interface  integer\n"
                            "network     1.3      parameter  bytes_out  counter, interface  integer\n"
                            "network     1.3      parameter  loss_rate  counter, interface  double\n");
    EXPECT_THAT(voc({"list", several, "--category", "hardware"}).out, HasSubstr("category  interface  hardware"));
    EXPECT_THAT(voc({"list", single, "--category=platform"}).out, Not(HasSubstr("backup_service")));
    EXPECT_EQ(voc({"list", several, "--category", "none"}).code, ExitCode::success);
}

TEST_F(VocCommandsTest, RestrictReportsUnknownName) {
    const ToolRun some = voc({"list", several, single, "--restrict", "network", "--restrict", "none"});
    expect(some, ExitCode::negative, "no vocabulary 'none'");
    EXPECT_THAT(some.out, HasSubstr("network"));
    EXPECT_THAT(some.out, Not(HasSubstr("base")));
    const ToolRun none = voc({"list", several, "--restrict", "none", "--json"});
    expect(none, ExitCode::negative, "no vocabulary 'none'");
    EXPECT_EQ(none.out, "[]\n");
}

TEST_F(VocCommandsTest, ListReportsVocabularyWithoutVersionAndPrintsTheOthers) {
    const std::string file = write("two", std::string("<message><vocabulary><name>old</name>" + parameter("x") +
                                                      "</vocabulary><vocabulary>"
                                                      "<name>new</name>" +
                                                      parameter("vocversion", "1") + "</vocabulary></message>"));
    const ToolRun run = voc({"list", file});
    expect(run, ExitCode::badInput, file + ": vocabulary 1 has no name or no parameter vocversion");
    EXPECT_THAT(run.out, HasSubstr("new"));
}

TEST_F(VocCommandsTest, NonVocabularyFileIsBadInput) {
    const std::string other = write("other", std::string("<message><environment/></message>"));
    const std::string damaged = write("damaged", std::string("<message>\n<vocabulary>"));
    for (const std::vector<std::string>& words : {std::vector<std::string>{"list", other},
                                                  {"merge", path("out"), other},
                                                  {"merge", other, several},
                                                  {"erase", other, "base", "4.5"},
                                                  {"has", other, "x"}})
        expect(voc(words), ExitCode::badInput, other + ": contains no vocabulary");
    EXPECT_THAT(voc({"list", damaged}).err, HasSubstr(damaged + ": line 2"));
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

TEST_F(VocCommandsTest, ListReturnsWorstExitCode) {
    EXPECT_EQ(voc({"list", single, several}).code, ExitCode::success);
    EXPECT_EQ(voc({"list", path("none"), several}).code, ExitCode::badInput);
    EXPECT_EQ(voc({"list", several, path("none")}).code, ExitCode::badInput);
    // An unreadable file outweighs a name that is not found.
    EXPECT_EQ(voc({"list", several, "--restrict", "none"}).code, ExitCode::negative);
    EXPECT_EQ(voc({"list", path("none"), several, "--restrict", "none"}).code, ExitCode::badInput);
    EXPECT_EQ(voc({"list", several, path("none"), "--restrict", "none"}).code, ExitCode::badInput);
}

TEST_F(VocCommandsTest, TooLongNameOrVersionIsBadInput) {
    const std::string tooLong(256, 'x');
    const std::string name = write("name", vocabulary(tooLong, "1"));
    expect(voc({"list", name}), ExitCode::badInput, name + ": vocabulary 1: the name is too long");
    const std::string version = write("version", vocabulary("a", tooLong));
    expect(voc({"has", version, "x"}), ExitCode::badInput, version + ": vocabulary 1: the version is too long");
    const std::string alone = write("alone", std::string("<message><data><agent>" + parameter("vocversion", tooLong) +
                                                         "</agent></data></message>"));
    expect(voc({"merge", path("out"), alone}), ExitCode::badInput, alone + ": the version is too long");
    EXPECT_EQ(voc({"list", write("longest", vocabulary(std::string(255, 'x'), "1"))}).code, ExitCode::success);
}

// ---- merge

TEST_F(VocCommandsTest, MergeCreatesOrExtendsFile) {
    const std::string out = path("out");
    const ToolRun first = voc({"merge", out, several});
    EXPECT_EQ(first.code, ExitCode::success) << first.err;
    EXPECT_EQ(first.out, "added base 4.5\nadded network 1.2\nadded network 1.3\n");
    EXPECT_EQ(voc({"list", out}).out, voc({"list", several}).out);

    const ToolRun second = voc({"merge", out, write("more", vocabulary("disk", "1")), several, single});
    EXPECT_EQ(second.out, "added disk 1\nskipped base 4.5\nskipped network 1.2\nskipped network 1.3\n"
                          "added qelagent.voc.linux 40500\n");
    EXPECT_THAT(vocabulariesIn(out),
                testing::ElementsAre("base 4.5", "disk 1", "network 1.2", "network 1.3", "qelagent.voc.linux 40500"));
    EXPECT_EQ(voc({"has", out, "container_support"}).code, ExitCode::success);
}

TEST_F(VocCommandsTest, MergeNamesUnnamedVocabulary) {
    const std::string out = path("out");
    EXPECT_EQ(voc({"merge", out, single, "--name", "agent"}).out, "added agent 40500\n");
    EXPECT_EQ(voc({"merge", out, "-", "--name=piped"}, read(single)).out, "added piped 40500\n");
    expect(voc({"merge", out, "-"}, read(single)), ExitCode::usage,
           "standard input: the vocabulary has no name; use --name with 1 to 255 characters");
    for (const std::string& bad : {std::string(), std::string(256, 'x')})
        expect(voc({"merge", out, single, "--name", bad}), ExitCode::usage,
               single + ": the vocabulary has no name; use --name with 1 to 255 characters");
    EXPECT_THAT(vocabulariesIn(out), testing::ElementsAre("agent 40500", "piped 40500"));
}

TEST_F(VocCommandsTest, MergeIsAllOrNothing) {
    const std::string out = write("out", vocabulary("a", "1"));
    const std::string before = read(out);
    const std::string bad = write("bad", mapOf("<name>b</name>" + parameter("x")));
    expect(voc({"merge", out, several, bad}), ExitCode::badInput,
           bad + ": vocabulary 1 has no name or no parameter vocversion");
    const std::string alone = write("alone", std::string("<message><data><agent/></data></message>"));
    expect(voc({"merge", out, several, alone}), ExitCode::badInput,
           alone + ": the vocabulary has no parameter vocversion");
    expect(voc({"merge", out, several, path("none")}), ExitCode::badInput,
           path("none") + ": No such file or directory");
    EXPECT_EQ(read(out), before);
    expect(voc({"merge", single, several}), ExitCode::badInput,
           single + ": an unnamed vocabulary, not a map; use `qel voc merge` to create a map");
}

TEST_F(VocCommandsTest, MergeToStandardOutputWritesOnlyTheMessage) {
    const ToolRun run = voc({"merge", "-", several});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(vocabulariesIn(write("out", run.out)).size(), 3U);
}

// ---- erase

TEST_F(VocCommandsTest, EraseRemovesOneVersion) {
    const std::string file = write("file", read(several));
    EXPECT_EQ(voc({"erase", file, "network", "1.2"}).code, ExitCode::success);
    EXPECT_THAT(vocabulariesIn(file), testing::ElementsAre("base 4.5", "network 1.3"));
    expect(voc({"erase", file, "network", "1.2"}), ExitCode::negative, file + ": no vocabulary network 1.2");
    const std::string tooLong(300, 'x');
    expect(voc({"erase", file, tooLong, "1"}), ExitCode::negative, file + ": no vocabulary " + tooLong + " 1");
    EXPECT_EQ(voc({"erase", file, "base", tooLong}).code, ExitCode::negative);
}

TEST_F(VocCommandsTest, ErasingLastVocabularyLeavesEmptyMap) {
    const std::string file = write("file", vocabulary("a", "1"));
    ASSERT_EQ(voc({"erase", file, "a", "1"}).code, ExitCode::success);
    EXPECT_THAT(vocabulariesIn(file), IsEmpty());
    expect(voc({"erase", file, "a", "1"}), ExitCode::negative, file + ": no vocabulary a 1");
    expect(voc({"list", file, "--restrict=a"}), ExitCode::negative, "no vocabulary 'a'");
    EXPECT_EQ(voc({"merge", file, several}).code, ExitCode::success);
    EXPECT_EQ(vocabulariesIn(file).size(), 3U);
}

// ---- has

TEST_F(VocCommandsTest, HasReportsResultByExitCode) {
    const ToolRun yes = voc({"has", several, "loss_rate"});
    EXPECT_EQ(yes.code, ExitCode::success);
    EXPECT_EQ(yes.out + yes.err, "");
    expect(voc({"has", several, "interface"}), ExitCode::negative, several + ": no parameter 'interface'");
    EXPECT_EQ(voc({"has", single, "backup_service"}).code, ExitCode::success);
    expect(voc({"has", "-", "bytes_in"}, read(single)), ExitCode::negative, "standard input: no parameter 'bytes_in'");
}

// ---- as a record

TEST_F(VocCommandsTest, RewriteKeepsVocabulary) {
    const ToolRun run = runTool({"record", "rewrite", "QelVocPrototype", several});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_THAT(run.out, HasSubstr("<parameter xmlns=\"urn:qel:env\">\n      <id xmlns=\"\">memory_limit</id>"));
}

} // namespace
