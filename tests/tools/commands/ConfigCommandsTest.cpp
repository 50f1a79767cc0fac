#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include "QelCommon/Log.h"
#include "QelCommon/SettingsProvider.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelMessage/QelMessage.h"
#include "tools/TerminalRun.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ConfigCommandsTest : public ToolTest {
protected:
    void SetUp() override { file = write("agent.conf", read(QEL_EXAMPLES "/agent.conf")); }

    [[nodiscard]] ToolRun config(std::vector<std::string> words) const {
        words.insert(words.begin(), "config");
        return runTool(words);
    }

    void expect(const ToolRun& run, ExitCode code, const std::string& error) const {
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.err, "qel: " + error + "\n");
        EXPECT_THAT(run.out, IsEmpty());
    }

    std::string file;
};

TEST_F(ConfigCommandsTest, GetPrintsValueAtPath) {
    const ToolRun run = config({"get", file, "/system/log_level"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "2\n");
    EXPECT_EQ(config({"get", file, "system/log_ignore_plugins"}).out, "statistics, mailer\n");
    EXPECT_EQ(config({"get", file, "/agent/id"}).out, "3f6c1a2e-0b57-4c1d-9a3e-5d2f7b8c9e01\n");
}

TEST_F(ConfigCommandsTest, GetEscapesOutputOnlyOnTerminal) {
    const std::string value = "a\x1B[2J\nb";
    ASSERT_EQ(config({"set", file, "/system/title", value, "--base64"}).code, ExitCode::success);
    EXPECT_EQ(config({"get", file, "/system/title", "--base64"}).out, value + '\n');
    const auto run = Qel::Tool::runOnTerminal("'" QEL_PROGRAM "' config get '" + file + "' /system/title --base64");
    if (!run)
        GTEST_SKIP() << "pseudo-terminals are not available";
    EXPECT_EQ(run->status, 0);
    EXPECT_EQ(run->out, "a\\x1b[2J\r\nb\r\n");
}

TEST_F(ConfigCommandsTest, GetDecodesBase64OnRequest) {
    const std::string path = "/agent/mapping_table/entry/connection_info/auth_name/name";
    EXPECT_EQ(config({"get", file, path}).out, "YWdlbnQ=\n");
    EXPECT_EQ(config({"get", file, path, "--base64"}).out, "agent\n");
    expect(config({"get", file, "/system/log_ignore_plugins", "--base64"}), ExitCode::badInput,
           file + ": cannot read the value at /system/log_ignore_plugins");
}

TEST_F(ConfigCommandsTest, ExampleRealmsHaveTheClassesOfTheirTypes) {
    Qel::QelConfiguration configuration;
    ASSERT_EQ(configuration.readFromFile(file), 0);
    const std::unique_ptr<Qel::QelMessageIterator> cursor(configuration.getMessage()->rootIterator());
    ASSERT_EQ(cursor->seek("/data/security/configuration/realms"), 0);
    Qel::QelRealmList realms;
    const auto reader = Qel::QelReaderDerivedList<int, Qel::QelRealm>(1957, Qel::QelReaderRequired, false);
    ASSERT_EQ(reader(*cursor, realms), 0);
    ASSERT_EQ(realms.size(), 3U);
    EXPECT_FALSE(boost::dynamic_pointer_cast<Qel::QelDirRealm>(realms[1]));
    EXPECT_TRUE(boost::dynamic_pointer_cast<Qel::QelDirRealm>(realms[2]));
    const auto builtin = configuration.getBuiltinRealm();
    ASSERT_TRUE(builtin);
    EXPECT_EQ(builtin->name, "Agent users");
}

TEST_F(ConfigCommandsTest, GetReportsMissingPathOrSection) {
    expect(config({"get", file, "/system/none"}), ExitCode::negative, file + ": no element at /system/none");
    expect(config({"get", file, "/none/log_level"}), ExitCode::negative, file + ": no element at /none/log_level");
}

TEST_F(ConfigCommandsTest, MissingOrDamagedFileIsBadInput) {
    const std::string damaged = write("damaged", std::string("<message>\n<data>"));
    for (const std::vector<std::string>& words : {std::vector<std::string>{"get", damaged, "/system/log_level"},
                                                  {"set", damaged, "/system/log_level", "1"},
                                                  {"list", damaged},
                                                  {"identity", damaged}}) {
        const ToolRun run = config(words);
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_THAT(run.err, StartsWith("qel: " + damaged + ": line 2"));
    }
    EXPECT_EQ(read(damaged), "<message>\n<data>");
    const std::string none = path("none");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"get", none, "/system/log_level"}, {"list", none}, {"identity", none}})
        expect(config(words), ExitCode::badInput, none + ": No such file or directory");
}

TEST_F(ConfigCommandsTest, MessageWithoutDataElementIsRejected) {
    const std::string other = write("other", std::string("<message><env/></message>"));
    for (const std::vector<std::string>& words : {std::vector<std::string>{"get", other, "/a/b"},
                                                  {"set", other, "/a/b", "1"},
                                                  {"list", other},
                                                  {"identity", other}})
        expect(config(words), ExitCode::badInput, other + ": not a configuration: the data element is missing");
    EXPECT_EQ(read(other), "<message><env/></message>");
}

TEST_F(ConfigCommandsTest, SetChangesOnlyTheGivenValue) {
    EXPECT_EQ(config({"set", file, "/system/log_level", "2"}).code, ExitCode::success);
    const std::string before = read(file);
    const ToolRun run = config({"set", file, "/system/log_level", "6"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out + run.err, "");
    std::string expected = before;
    expected.replace(expected.find("<log_level>2"), 12, "<log_level>6");
    EXPECT_EQ(read(file), expected);
}

TEST_F(ConfigCommandsTest, SetCreatesMissingElements) {
    EXPECT_EQ(config({"set", file, "/backup/store/folder", "/var/backup"}).code, ExitCode::success);
    EXPECT_EQ(config({"get", file, "/backup/store/folder"}).out, "/var/backup\n");
    EXPECT_THAT(read(file), HasSubstr("<backup>\n      <configuration>\n        <store>"));
}

TEST_F(ConfigCommandsTest, SetCreatesMissingFile) {
    const std::string fresh = path("fresh.conf");
    EXPECT_EQ(config({"set", fresh, "/system/log_level", "--", "-1"}).code, ExitCode::success);
    EXPECT_EQ(config({"get", fresh, "/system/log_level"}).out, "-1\n");
    EXPECT_EQ(config({"list", fresh}).out, "system\n  log_level = -1\n");
}

TEST_F(ConfigCommandsTest, SetEncodesBase64OnRequest) {
    EXPECT_EQ(config({"set", file, "/system/key", "a value", "--base64"}).code, ExitCode::success);
    EXPECT_EQ(config({"get", file, "/system/key"}).out, "YSB2YWx1ZQ==\n");
}

TEST_F(ConfigCommandsTest, SetRejectsPathsThatDoNotNameAnOption) {
    const std::string before = read(file);
    for (const char* path : {"/", "/system", "system", ""})
        expect(config({"set", file, path, "1"}), ExitCode::usage,
               "'" + std::string(path) + "' is not the path of an option, such as /system/log_level");
    for (const char* path : {"/system/", "/system//a", "//a", "system/a/"})
        expect(config({"set", file, path, "1"}), ExitCode::usage, "'" + std::string(path) + "' contains an empty name");
    EXPECT_EQ(read(file), before);
}

TEST_F(ConfigCommandsTest, SetReplacesFileAndKeepsPermissions) {
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    // The hard link keeps the old inode.
    std::filesystem::create_hard_link(file, path("old"));
    const std::string old = read(file);
    EXPECT_EQ(config({"set", file, "/system/log_level", "6"}).code, ExitCode::success);
    ASSERT_EQ(stat(file.c_str(), &after), 0);
    EXPECT_NE(before.st_ino, after.st_ino);
    EXPECT_EQ(after.st_mode & 0777U, 0640U);
    EXPECT_EQ(read(path("old")), old);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path("")), {}), 2);
}

TEST_F(ConfigCommandsTest, NewConfigurationIsAccessibleByOwnerOnly) {
    const mode_t mask = umask(0);
    const std::string fresh = path("fresh.conf");
    EXPECT_EQ(config({"set", fresh, "/system/password", "secret"}).code, ExitCode::success);
    Qel::QelConfiguration saved;
    ASSERT_EQ(saved.readFromFile(file), 0);
    ASSERT_EQ(saved.saveToFile(path("saved.conf")), 0);
    umask(mask);
    for (const std::string& name : {fresh, path("saved.conf")}) {
        struct stat status {};
        ASSERT_EQ(stat(name.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0600U) << name;
    }
}

TEST_F(ConfigCommandsTest, SetFollowsSymbolicLinkToMissingFile) {
    std::filesystem::create_symlink("fresh.conf", path("link"));
    EXPECT_EQ(config({"set", path("link"), "/system/log_level", "5"}).code, ExitCode::success);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(config({"get", path("fresh.conf"), "/system/log_level"}).out, "5\n");
}

TEST_F(ConfigCommandsTest, SetRejectsReadOnlyFile) {
    const std::string before = read(file);
    ASSERT_EQ(chmod(file.c_str(), 0444), 0);
    expect(config({"set", file, "/system/log_level", "6"}), ExitCode::failed, file + ": Permission denied");
    EXPECT_EQ(read(file), before);
}

TEST_F(ConfigCommandsTest, SetAcceptsLongestFileNames) {
    for (const std::size_t length : {245U, 255U}) {
        const std::string name = path(std::string(length, 'c'));
        for (const char* const value : {"1", "2"})
            EXPECT_EQ(config({"set", name, "/system/log_level", value}).err, "");
        EXPECT_EQ(config({"get", name, "/system/log_level"}).out, "2\n");
    }
}

TEST_F(ConfigCommandsTest, SetReportsFailedWrite) {
    const ToolRun run = config({"set", path("none/agent.conf"), "/system/log_level", "1"});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_THAT(run.err, HasSubstr("No such file or directory"));
}

TEST_F(ConfigCommandsTest, ListPrintsTreeWithoutConfigurationElements) {
    const ToolRun run = config({"list", file});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, StartsWith("system\n  log_level = 2\n  log_func_name_level = 1\n  log_process_plugins\n"));
    EXPECT_THAT(run.out, HasSubstr("\nserver_group\n  master\n    id = 3f6c1a2e"));
    EXPECT_EQ(config({"list", file, "/server_group/master"}).out, "id = 3f6c1a2e-0b57-4c1d-9a3e-5d2f7b8c9e01\n");
    EXPECT_EQ(config({"list", file, "/"}).out, run.out);
    expect(config({"list", file, "/none"}), ExitCode::negative, file + ": no element at /none");
}

TEST_F(ConfigCommandsTest, ListJsonHasTheTextTree) {
    const ToolRun run = config({"list", file, "/system", "--json"});
    EXPECT_EQ(run.code, ExitCode::success);
    const Json tree = Json::parse(run.out);
    ASSERT_EQ(tree.size(), 5U);
    EXPECT_EQ(tree[0]["name"], "log_level");
    EXPECT_EQ(tree[0]["value"], "2");
    EXPECT_THAT(tree[0]["children"], IsEmpty());
}

TEST_F(ConfigCommandsTest, ListAndIdentityHidePasswords) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"list", file},
                                                  {"list", file, "--json"},
                                                  {"identity", file},
                                                  {"identity", file, "--json"}}) {
        const ToolRun run = config(words);
        EXPECT_THAT(run.out, Not(HasSubstr("bm90LWEtcmVhbC1zZWNyZXQ=")));
        EXPECT_THAT(run.out, Not(HasSubstr("not-a-real-secret")));
    }
    EXPECT_THAT(config({"list", file}).out, HasSubstr("password = (hidden)"));
}

TEST_F(ConfigCommandsTest, ListHidesElementsBelowPassword) {
    const std::string secrets = write("secrets.conf", std::string("<message><data><system><configuration>"
                                                                  "<password><value>hidden1</value></password>"
                                                                  "<password>hidden2<value><id>hidden3</id></value>"
                                                                  "</password><password/>"
                                                                  "</configuration></system>"
                                                                  "<password><configuration><id>hidden4</id>"
                                                                  "</configuration></password></data></message>"));
    const std::string shown = "password = (hidden)\n";
    EXPECT_EQ(config({"list", secrets}).out, "system\n  " + shown + "  " + shown + "  password\n" + shown);
    EXPECT_EQ(config({"list", secrets, "/system"}).out, shown + shown + "password\n");
    const Json json = Json::parse(config({"list", secrets, "/system", "--json"}).out);
    EXPECT_EQ(json[0], Json::parse(R"json({"name":"password","value":"(hidden)","children":[]})json"));
    // The result does not reveal whether the element exists.
    for (const char* const path : {"/system/password", "/system/password/value", "/system/password/value/id",
                                   "/system/password/none", "/password", "/password/id"}) {
        const ToolRun run = config({"list", secrets, path});
        EXPECT_EQ(run.code, ExitCode::success) << path;
        EXPECT_EQ(run.out + run.err, "") << path;
    }
}

TEST_F(ConfigCommandsTest, IdentityReportsEveryMalformedEid) {
    const std::string bad = write(
        "bad.conf", std::string("<message><data>"
                                "<agent><configuration><id>own</id><mapping_table><entry><id>mapped\n</id></entry>"
                                "</mapping_table></configuration></agent>"
                                "<server_group><configuration><master><id>chief</id></master>"
                                "<slaves><entry><id>00000000-0000-0000-0000-000000000001</id></entry>"
                                "<entry><id>slave</id></entry></slaves></configuration></server_group>"
                                "</data></message>"));
    const auto malformed = [&](const std::string& where) {
        return "qel: " + bad + ": " + where + "' is not a valid EID\n";
    };
    const std::string errors = malformed("/agent/id: 'own") + malformed("/server_group/master/id: 'chief") +
                               malformed("/server_group/slaves/entry/id: 'slave") +
                               malformed("/agent/mapping_table/entry/id: 'mapped\\n");
    const ToolRun run = config({"identity", bad});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, errors);
    EXPECT_THAT(run.out, StartsWith("eid     malformed\nrole    unknown\nmaster  malformed\nslave   00000000-"));
    const ToolRun json = config({"identity", bad, "--json"});
    EXPECT_EQ(json.code, ExitCode::badInput);
    EXPECT_EQ(json.err, errors);
    EXPECT_TRUE(Json::parse(json.out)["eid"].is_null());
}

TEST_F(ConfigCommandsTest, IdentityPrintsAgentGroupAndMappings) {
    const ToolRun run = config({"identity", file});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, StartsWith("eid     3f6c1a2e-0b57-4c1d-9a3e-5d2f7b8c9e01\n"
                                    "role    master\n"
                                    "master  3f6c1a2e-0b57-4c1d-9a3e-5d2f7b8c9e01\n"
                                    "slave   5b1d7c30-92ae-4e6f-8c44-0a9e6f3b2d11\n"));
    EXPECT_THAT(run.out, HasSubstr("\n5b1d7c30-92ae-4e6f-8c44-0a9e6f3b2d11  ssl"));

    const Json identity = Json::parse(config({"identity", file, "--json"}).out);
    EXPECT_EQ(identity["role"], "master");
    EXPECT_EQ(identity["slaves"].size(), 2U);
    ASSERT_EQ(identity["mappings"].size(), 2U);
    EXPECT_EQ(identity["mappings"][0], Json::parse(R"({"eid":"5b1d7c30-92ae-4e6f-8c44-0a9e6f3b2d11","protocol":"ssl",
        "address":"192.0.2.18","port":4434,"user":"agent"})"));
}

TEST_F(ConfigCommandsTest, IdentityPrintsEachRole) {
    const auto role = [&] { return Json::parse(config({"identity", file, "--json"}).out)["role"].get<std::string>(); };
    ASSERT_EQ(config({"set", file, "/agent/id", "00000000-0000-0000-0000-000000000001"}).code, ExitCode::success);
    EXPECT_EQ(role(), "slave");
    ASSERT_EQ(config({"set", file, "/agent/id", "invalid"}).code, ExitCode::success);
    EXPECT_EQ(role(), "unknown");
    file = write("empty.conf", std::string("<message><data/></message>"));
    EXPECT_EQ(role(), "alone");
    EXPECT_EQ(config({"identity", file}).out, "eid     none\nrole    alone\nmaster  none\n");
    const Json identity = Json::parse(config({"identity", file, "--json"}).out);
    EXPECT_TRUE(identity["eid"].is_null());
    EXPECT_TRUE(identity["master"].is_null());
}

TEST_F(ConfigCommandsTest, RecordRewriteKeepsWholeConfiguration) {
    const ToolRun run = runTool({"record", "rewrite", "QelConfiguration", file});
    EXPECT_EQ(run.code, ExitCode::success);
    const std::string rewritten = write("rewritten", run.out);
    EXPECT_EQ(config({"list", rewritten}).out, config({"list", file}).out);
    EXPECT_EQ(runTool({"record", "rewrite", "QelConfiguration", rewritten}).out, run.out);
    EXPECT_EQ(runTool({"record", "rewrite", "QelConfiguration", "-"}, "<message/>").code, ExitCode::badInput);
}

TEST_F(ConfigCommandsTest, LogSettingsOptionSetsLogLevel) {
    EXPECT_EQ(config({"list", file, "--log-settings", file}).code, ExitCode::success);
    EXPECT_EQ(Qel::debug_level, 2);
    Qel::Debug::setSettingsProvider(nullptr);
    expect(config({"list", file, "--log-settings", path("none")}), ExitCode::badInput,
           path("none") + ": No such file or directory");
}

} // namespace
