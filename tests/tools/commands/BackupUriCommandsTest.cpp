#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/LogCapture.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* storage = QEL_EXAMPLES "/backup/storage.xml";
constexpr const char* password = "open sesame";

class BackupUriCommandsTest : public ToolTest {
protected:
    static ToolRun parse(const std::string& uri, const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{"backup-uri", "parse", uri};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runTool(arguments);
    }
    static std::string build(const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"backup-uri", "build"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ToolRun run = runTool(all);
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        EXPECT_THAT(run.out, EndsWith("\n"));
        return run.out.substr(0, run.out.size() - 1);
    }
    static std::string uriWithStorage() { return build({"a/b", "c", "--storage", storage}); }

private:
    const Qel::TestSupport::LogCapture m_log{Qel::LogLevel::error}; ///< an unreadable URI logs an error
};

TEST_F(BackupUriCommandsTest, ParsePrintsComponents) {
    const ToolRun run = parse("backup://a/b/c");
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "backup   a/b\n"
                       "subpath  c\n"
                       "storage  none\n");
    EXPECT_EQ(parse("backup://a/b").out, "backup   a/b\n"
                                         "subpath  none\n"
                                         "storage  none\n");
}

TEST_F(BackupUriCommandsTest, ParseJsonHasAllComponents) {
    const ToolRun run = parse("backup://a/b/c", {"--json"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(Json::parse(run.out), Json::parse(R"({"valid":true,"backup":"a/b","subPath":"c","storage":null})"));
}

TEST_F(BackupUriCommandsTest, ParsePrintsStorageWithoutPassword) {
    const ToolRun run = parse(uriWithStorage());
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "backup        a/b\n"
                       "subpath       c\n"
                       "storage type  1\n"
                       "storage path  /srv/vault\n"
                       "user          keeper\n"
                       "domain        example.org\n"
                       "realm         3b1f5d0a-2c4e-4f6a-8b9c-0d1e2f3a4b5c\n"
                       "password      (hidden)\n");
    const ToolRun json = parse(uriWithStorage(), {"--json"});
    EXPECT_EQ(Json::parse(json.out),
              Json::parse(R"({"valid":true,"backup":"a/b","subPath":"c","storage":{"type":1,"path":"/srv/vault",
                              "user":"keeper","domain":"example.org",
                              "realm":"3b1f5d0a-2c4e-4f6a-8b9c-0d1e2f3a4b5c"}})"));
}

TEST_F(BackupUriCommandsTest, ParsePrintsPasswordOnRequest) {
    EXPECT_THAT(parse(uriWithStorage(), {"--show-secrets"}).out, EndsWith("\npassword      open sesame\n"));
    const Json document = Json::parse(parse(uriWithStorage(), {"--show-secrets", "--json"}).out);
    EXPECT_EQ(document["storage"]["password"], password);
}

TEST_F(BackupUriCommandsTest, StorageWithoutNameHasTypeAndPathOnly) {
    const std::string file = write("plain", std::string("<message><storage><type>2</type><path>L3Y=</path></storage>"
                                                        "</message>"));
    const std::string uri = build({"a/b", "--storage", file});
    EXPECT_EQ(parse(uri).out, "backup        a/b\n"
                              "subpath       none\n"
                              "storage type  2\n"
                              "storage path  /v\n");
    EXPECT_EQ(Json::parse(parse(uri, {"--json"}).out)["storage"], Json::parse(R"({"type":2,"path":"/v"})"));
}

TEST_F(BackupUriCommandsTest, ParseRejectsOtherUris) {
    const auto expect = [](const std::string& uri, const std::string& reason) {
        const ToolRun run = parse(uri);
        EXPECT_EQ(run.code, ExitCode::negative);
        EXPECT_THAT(run.out, IsEmpty());
        EXPECT_EQ(run.err, "qel: not a backup URI: " + reason + "\n");
        const ToolRun json = parse(uri, {"--json"});
        EXPECT_EQ(json.code, ExitCode::negative);
        EXPECT_EQ(Json::parse(json.out), Json::parse(R"({"valid":false,"backup":"","subPath":"","storage":null})"));
    };
    expect("file://a/b/c", "it does not start with backup://");
    expect("a/b/c", "it does not start with backup://");
    expect("backups://a/b/c", "it does not start with backup://");
    expect("backup://abc", "no slash after the first component of the backup name");
    expect(uriWithStorage().substr(0, uriWithStorage().find('&')) + "&a",
           "no slash after the first component of the backup name");
    expect("backup://&a/b/c", "cannot read the storage: byte 0: not a message in binary form");
    expect("backup://" + std::string(1 << 20, '&'), "cannot read the storage: byte 0: not a message in binary form");
}

TEST_F(BackupUriCommandsTest, ErrorsQuoteNeitherUriNorSecret) {
    const std::string whole = uriWithStorage();
    const std::string blob = whole.substr(9, whole.find('&') - 9);
    const std::string secret = "6f70656e20736573616d65"; // the password as hexadecimal digits
    ASSERT_THAT(blob, HasSubstr(secret));
    for (std::string uri : {"backup://" + blob.substr(0, blob.size() - 2) + "&a/b/c", "backup://" + blob + "&a",
                            "backup://" + blob, blob + "&a/b/c", "backup://00" + blob + "&a/b/c"}) {
        const ToolRun run = parse(uri, {"--show-secrets"});
        EXPECT_EQ(run.code, ExitCode::negative);
        EXPECT_THAT(run.out + run.err, Not(HasSubstr(secret)));
        EXPECT_THAT(run.out + run.err, Not(HasSubstr(password)));
    }
    const ToolRun run = runTool({"backup-uri", "build", blob + "&a/b", "c"});
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_THAT(run.out + run.err, Not(HasSubstr(secret)));
}

TEST_F(BackupUriCommandsTest, BuildPrintsUri) {
    EXPECT_EQ(build({"a/b", "c"}), "backup://a/b/c");
    EXPECT_EQ(build({"a/b", "c/d\\e"}), "backup://a/b/c/d\\e");
    EXPECT_EQ(build({"a/b"}), "backup://a/b/");
}

TEST_F(BackupUriCommandsTest, BuildRejectsNamesThatDoNotRoundTrip) {
    for (const char* const backup : {"", "abc", "a/b/c", "a/b\\c", "x&a/b"}) {
        const ToolRun run = runTool({"backup-uri", "build", backup});
        EXPECT_EQ(run.code, ExitCode::usage) << backup;
        EXPECT_THAT(run.out, IsEmpty());
        EXPECT_EQ(run.err,
                  "qel: cannot encode this backup name in a URI: a name has two components separated by a slash, "
                  "without other slashes, backslashes or '&'\n");
    }
    EXPECT_THAT(build({"x&a/b", "--storage", storage}), EndsWith("&x&a/b/")) << "valid after a storage";
}

TEST_F(BackupUriCommandsTest, UnreadableStorageIsBadInput) {
    const std::string empty = write("empty", std::string("<message/>"));
    const std::string other = write("other", std::string("<message><storage><type>1</type></storage></message>"));
    const auto expect = [](const std::string& file, const std::string& error) {
        const ToolRun run = runTool({"backup-uri", "build", "a/b", "--storage", file});
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_THAT(run.out, IsEmpty());
        EXPECT_EQ(run.err, "qel: " + file + ": " + error + "\n");
    };
    expect(path("none"), "No such file or directory");
    expect(empty, "empty message");
    expect(other, "/storage: can't read QelDSLocation: element path (path) is missing");
}

struct Example {
    const char* file;
    const char* record;
};

TEST_F(BackupUriCommandsTest, RewriteReproducesExamples) {
    for (const auto& [file, record] : {Example{"backup/storage", "QelDSLocation"},
                                       {"backup/options", "QelBackupOptions"},
                                       {"backup/environment", "QelEnvBackupData"},
                                       {"backup/physical-to-virtual", "QelP2VMigrateOptions"},
                                       {"backup/virtual-to-virtual", "QelV2VMigrateOptions"},
                                       {"host/services", "QelService"}}) {
        const std::string path = std::string(QEL_EXAMPLES "/") + file + ".xml";
        const ToolRun run = runTool({"record", "rewrite", record, path});
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        const ToolRun source = runTool({"record", "rewrite", record, "-"}, run.out);
        EXPECT_EQ(source.out, run.out) << file;
        EXPECT_THAT(source.err, IsEmpty());
    }
}

} // namespace
