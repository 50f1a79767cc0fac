#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "QelFunctionalityCore/Environment/QelEnvFactory.h"
#include "QelFunctionalityCore/Environment/QelEnvUpdater.h"
#include "tools/SampleEnvs.h"
#include "tools/ToolRun.h"
#include "tools/cachefile/CacheFileBuilder.h"

namespace {

using namespace SampleEnvs;
using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct MockUpdater : Qel::QelEnvUpdater {
    MOCK_METHOD(int, insertEnv, (const Qel::QelEnv&), (override));
    MOCK_METHOD(int, updateEnv, (const Qel::QelEnv&), (override));
    MOCK_METHOD(int, removeEnv, (const Qel::QelEID&), (override));
    MOCK_METHOD(void, syncEnvList, (const Qel::QelEID&, const Qel::QelEnvIDList&), (override));
    MOCK_METHOD(int, checkEnv, (const Qel::QelEnv&), (override));
};

class EnvCommandsTest : public ToolTest {
protected:
    void SetUp() override { cache = path("cache"); }

    /// Checks that the file is sound and no process holds a snapshot.
    void TearDown() override {
        if (std::filesystem::exists(cache)) {
            const ToolRun check = runTool({"cache", "check", cache});
            EXPECT_EQ(check.code, ExitCode::success) << check.out << check.err;
            EXPECT_EQ(Json::parse(runTool({"cache", "info", cache, "--json"}).out)["snapshotRefCount"], 1);
        }
    }

    [[nodiscard]] ToolRun put(const std::string& envs) const {
        return runTool({"env", "put", cache, "-"}, message(envs));
    }

    /// Inserts a server with two machines, one of which has a container.
    void putFamily() const {
        const ToolRun run = put(env(eid(1), noEid, "server") + env(eid(2), eid(1), "first", 3) +
                                env(eid(3), eid(1), "second") + env(eid(4), eid(2), "inner"));
        ASSERT_EQ(run.code, ExitCode::success) << run.err;
    }

    [[nodiscard]] std::vector<std::string> eidsListed(std::vector<std::string> options) const {
        std::vector<std::string> arguments{"env", "list", cache, "--json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        std::vector<std::string> eids;
        for (const Json& env : Json::parse(runTool(arguments).out))
            eids.push_back(env["eid"]);
        return eids;
    }

    /// Runs every command on a file that all of them must reject and leave unchanged.
    void expectRejected(const std::string& file, const std::string& reason) const {
        const std::string before = read(file);
        const std::string sample = write("sample.xml", message(env(eid(1), noEid, "server")));
        const std::vector<std::vector<std::string>> commands{{"env", "put", file, sample},
                                                             {"env", "list", file},
                                                             {"env", "get", file, eid(1)},
                                                             {"env", "remove", file, eid(1)},
                                                             {"env", "watch", file}};
        for (const auto& command : commands) {
            const ToolRun run = runTool(command);
            EXPECT_EQ(run.code, ExitCode::badInput) << command[1];
            EXPECT_THAT(run.err, StartsWith("qel: " + file + ": " + reason)) << command[1];
            EXPECT_EQ(read(file), before) << command[1];
        }
    }

    std::string cache;
};

// --- put

TEST_F(EnvCommandsTest, LongTypeIsTruncatedBetweenCharacters) {
    const std::pair<std::string, std::string> types[] = {
        {"123456789012345", "123456789012345"}, {"1234567890123456", "123456789012345"},
        {"1234567890123ö", "1234567890123ö"},   {"12345678901234ö", "12345678901234"},
        {"1234567890123€", "1234567890123"},    {"123456789012\U0001F600", "123456789012"},
    };
    unsigned number = 0;
    for (const auto& [type, shown] : types) {
        std::string text = env(eid(++number), noEid, "typed");
        text.replace(text.find("<type>vm"), 8, "<type>" + type);
        ASSERT_EQ(put(text).code, ExitCode::success);
        EXPECT_EQ(Json::parse(runTool({"env", "list", cache, "--json"}).out)[number - 1]["type"], shown);
        EXPECT_THAT(runTool({"env", "list", cache}).out, HasSubstr("  " + shown + " "));
    }
}

TEST_F(EnvCommandsTest, PutInsertsNewAndUpdatesExistingEnvironments) {
    EXPECT_EQ(put(env(eid(1), noEid, "old")).out, "inserted " + eid(1) + "  old\n");
    const ToolRun run = put(env(eid(1), noEid, "new") + env(eid(2), eid(1), "other"));
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "updated " + eid(1) + "  new\ninserted " + eid(2) + "  other\n");
    EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(EnvCommandsTest, UpdateDoesNotCallInsertEnv) {
    ASSERT_EQ(put(env(eid(1), noEid, "old")).code, ExitCode::success);
    const boost::shared_ptr<testing::StrictMock<MockUpdater>> updater(new testing::StrictMock<MockUpdater>);
    Qel::QelEnvFactory::getInstance().setEnvUpdater("vm", updater);
    EXPECT_CALL(*updater, checkEnv).WillOnce(testing::Return(0));
    EXPECT_CALL(*updater, updateEnv).WillOnce(testing::Return(0));
    EXPECT_EQ(put(env(eid(1), noEid, "new")).code, ExitCode::success);
    Qel::QelEnvFactory::getInstance().setEnvUpdater("vm", nullptr);
}

TEST_F(EnvCommandsTest, PutReadsSeveralFilesInBothForms) {
    const std::string text = write("text.xml", message(env(eid(1), noEid, "one")));
    const std::string other = write("other.xml", message(env(eid(2), noEid, "two")));
    const std::string binary = path("binary");
    ASSERT_EQ(runTool({"message", "convert", other, binary, "--to", "binary"}).code, ExitCode::success);
    EXPECT_EQ(runTool({"env", "put", cache, text, binary}).code, ExitCode::success);
    EXPECT_THAT(eidsListed({}), ElementsAre(eid(1), eid(2)));
}

TEST_F(EnvCommandsTest, PutContinuesAfterInvalidEnvironment) {
    const ToolRun run = put(env(eid(1), noEid, "one") + "<environment><eid>" + eid(9) + "</eid></environment>" +
                            env("no-eid", noEid, "bad") + env(noEid, noEid, "empty") + env(eid(2), noEid, "two"));
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.out, "inserted " + eid(1) + "  one\ninserted " + eid(2) + "  two\n");
    EXPECT_THAT(run.err, HasSubstr("qel: standard input: environment 2: reader returned -1: "));
    EXPECT_THAT(run.err, HasSubstr("qel: standard input: environment 3: reader returned -1: "));
    EXPECT_THAT(run.err, HasSubstr("qel: standard input: environment 4: the EID is empty\n"));
    EXPECT_THAT(eidsListed({}), ElementsAre(eid(1), eid(2)));
}

TEST_F(EnvCommandsTest, PutContinuesAfterInvalidFile) {
    const std::string bad = write("bad.xml", std::string("<message>"));
    const std::string bare = write("bare.xml", message(""));
    const std::string good = write("good.xml", message(env(eid(1), noEid, "one")));
    const ToolRun run = runTool({"env", "put", cache, bad, path("none"), bare, good});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.out, "inserted " + eid(1) + "  one\n");
    EXPECT_THAT(run.err, HasSubstr("qel: " + bad + ": line 1"));
    EXPECT_THAT(run.err, HasSubstr("qel: " + path("none") + ": No such file or directory\n"));
    EXPECT_THAT(run.err, HasSubstr("qel: " + bare + ": contains no environment\n"));
}

TEST_F(EnvCommandsTest, PutReturnsWorstExitCode) {
    const std::string good = write("good.xml", message(env(eid(1), noEid, "one")));
    const std::string bad = write("bad.xml", std::string("<message>"));
    const std::string large = write("large.xml", message(env(eid(2), noEid, std::string(0x1000000, 'x'))));
    expectWorstExitCode({"env", "put", cache}, good, bad, large);
    const std::string empty = env(noEid, noEid, "empty");
    const std::string tooLarge = env(eid(2), noEid, std::string(0x1000000, 'x'));
    EXPECT_EQ(put(tooLarge + empty).code, ExitCode::failed);
    EXPECT_EQ(put(empty + tooLarge).code, ExitCode::failed);
}

TEST_F(EnvCommandsTest, PutContinuesAfterTooLargeEnvironment) {
    const ToolRun run = put(env(eid(1), noEid, std::string(0x1000000, 'x')) + env(eid(2), noEid, "small"));
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_EQ(run.err, "qel: standard input: environment 1: record exceeds the limit of 16777216 bytes\n");
    EXPECT_THAT(eidsListed({}), ElementsAre(eid(2)));
}

TEST_F(EnvCommandsTest, PutFormatsUnformattedFile) {
    cache = write("zeros", std::string(100, '\0'));
    EXPECT_EQ(put(env(eid(1), noEid, "one")).code, ExitCode::success);
}

TEST_F(EnvCommandsTest, FailedCacheCreationIsReported) {
    const ToolRun run = runTool({"env", "put", path("none/cache"), "-"}, message(env(eid(1), noEid, "one")));
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_EQ(run.err, "qel: " + path("none/cache") + ": cannot map the file: No such file or directory\n");
}

TEST_F(EnvCommandsTest, EscapesControlCharactersInTitles) {
    EXPECT_EQ(put(env(eid(1), noEid, "a&#9;b")).out, "inserted " + eid(1) + "  a\\tb\n");
}

// --- list

TEST_F(EnvCommandsTest, ListPrintsTableInEidOrder) {
    putFamily();
    const ToolRun run = runTool({"env", "list", cache});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "EID                                   parent                                type  state  "
                       "transition  alert  title\n" +
                           eid(1) + "  -                                     vm        1           0  2 red  server\n" +
                           eid(2) + "  " + eid(1) + "  vm        3           0  2 red  first\n" + eid(3) + "  " +
                           eid(1) + "  vm        1           0  2 red  second\n" + eid(4) + "  " + eid(2) +
                           "  vm        1           0  2 red  inner\n");
}

TEST_F(EnvCommandsTest, ListJsonHasAllFields) {
    ASSERT_EQ(put(env(eid(2), eid(1), "first", 3)).code, ExitCode::success);
    const Json list = Json::parse(runTool({"env", "list", cache, "--json"}).out);
    ASSERT_EQ(list.size(), 1U);
    std::vector<std::string> keys;
    for (const auto& [key, value] : list[0].items())
        keys.push_back(key);
    EXPECT_THAT(keys, ElementsAre("eid", "parent", "type", "state", "transition", "title", "alerts", "configSize",
                                  "vconfigSize"));
    EXPECT_EQ(list[0]["eid"], eid(2));
    EXPECT_EQ(list[0]["parent"], eid(1));
    EXPECT_EQ(list[0]["type"], "vm");
    EXPECT_EQ(list[0]["state"], 3);
    EXPECT_EQ(list[0]["transition"], 0);
    EXPECT_EQ(list[0]["title"], "first");
    EXPECT_EQ(list[0]["alerts"], Json({0, 2, 0, 0, 0}));
    EXPECT_GT(list[0]["vconfigSize"], 0);
}

TEST_F(EnvCommandsTest, ListWithParentPrintsChildren) {
    putFamily();
    EXPECT_THAT(eidsListed({"--parent", eid(1)}), ElementsAre(eid(2), eid(3)));
    EXPECT_THAT(eidsListed({"--parent", eid(4)}), IsEmpty());
    EXPECT_THAT(eidsListed({"--parent", eid(77)}), IsEmpty());
    EXPECT_THAT(eidsListed({"--parent", noEid}), ElementsAre(eid(1)));
}

TEST_F(EnvCommandsTest, ListTreePrintsHierarchy) {
    putFamily();
    EXPECT_EQ(runTool({"env", "list", cache, "--tree"}).out,
              "title        EID                                   type  state  transition  alert\n"
              "server       " +
                  eid(1) + "  vm        1           0  2 red\n├─ first     " + eid(2) +
                  "  vm        3           0  2 red\n│  └─ inner  " + eid(4) +
                  "  vm        1           0  2 red\n└─ second    " + eid(3) + "  vm        1           0  2 red\n");
}

TEST_F(EnvCommandsTest, ListTreeWithParentPrintsDescendants) {
    putFamily();
    EXPECT_THAT(eidsListed({"--tree", "--parent", eid(1)}), ElementsAre(eid(2), eid(3), eid(4)));
    EXPECT_THAT(runTool({"env", "list", cache, "--tree", "--parent", eid(1)}).out, HasSubstr("\n└─ inner  "));
}

TEST_F(EnvCommandsTest, InvalidParentIsUsageError) {
    const ToolRun run = runTool({"env", "list", cache, "--parent", "server"});
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_THAT(run.err, StartsWith("qel: 'server' is not an EID"));
}

// --- get

TEST_F(EnvCommandsTest, GetAndPutRoundTrip) {
    putFamily();
    for (const bool binary : {false, true}) {
        std::vector<std::string> command{"env", "get", cache, eid(2)};
        if (binary)
            command.emplace_back("--binary");
        const ToolRun first = runTool(command);
        EXPECT_EQ(first.code, ExitCode::success);
        EXPECT_EQ(runTool({"env", "put", cache, "-"}, first.out).code, ExitCode::success);
        EXPECT_EQ(runTool(command).out, first.out);
        EXPECT_EQ(first.out.starts_with("<?xml"), !binary);
    }
    EXPECT_THAT(runTool({"env", "get", cache, eid(2)}).out, HasSubstr("\n  <environment xmlns=\"urn:qel:env\" "));
}

TEST_F(EnvCommandsTest, GetOmitsAbsentConfiguration) {
    ASSERT_EQ(put("<environment><parent_eid>" + noEid + "</parent_eid><eid>" + eid(1) + "</eid></environment>").code,
              ExitCode::success);
    EXPECT_THAT(runTool({"env", "get", cache, eid(1)}).out, testing::Not(HasSubstr("config")));
}

TEST_F(EnvCommandsTest, GetReportsUnknownEnvironment) {
    putFamily();
    const ToolRun run = runTool({"env", "get", cache, eid(77)});
    EXPECT_EQ(run.code, ExitCode::negative);
    EXPECT_EQ(run.err, "qel: " + eid(77) + ": not in the cache\n");
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(EnvCommandsTest, GetOfInvalidEidIsUsageError) {
    EXPECT_EQ(runTool({"env", "get", cache, "inner"}).code, ExitCode::usage);
}

// --- remove

TEST_F(EnvCommandsTest, RemoveSucceedsForUnknownEnvironments) {
    putFamily();
    const ToolRun run = runTool({"env", "remove", cache, eid(2), eid(77), eid(4)});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "removed " + eid(2) + "\nunknown " + eid(77) + "\nremoved " + eid(4) + "\n");
    EXPECT_THAT(eidsListed({}), ElementsAre(eid(1), eid(3)));
}

TEST_F(EnvCommandsTest, RemoveDoesNothingIfAnyEidIsInvalid) {
    putFamily();
    EXPECT_EQ(runTool({"env", "remove", cache, eid(2), "x"}).code, ExitCode::usage);
    EXPECT_EQ(eidsListed({}).size(), 4U);
}

// --- watch

TEST_F(EnvCommandsTest, WatchRejectsIntervalOutOfRange) {
    putFamily();
    for (const char* interval : {"0", "-1", "nan", "inf", "1e9", "soon"})
        EXPECT_EQ(runTool({"env", "watch", cache, std::string("--interval=") + interval}).code, ExitCode::usage);
}

// --- invalid cache files

TEST_F(EnvCommandsTest, OnlyPutCreatesFile) {
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"env", "list", cache},
                                               {"env", "get", cache, eid(1)},
                                               {"env", "remove", cache, eid(1)},
                                               {"env", "watch", cache}}) {
        EXPECT_EQ(runTool(command).code, ExitCode::badInput) << command[1];
        EXPECT_FALSE(std::filesystem::exists(cache)) << command[1];
    }
}

TEST_F(EnvCommandsTest, ForeignFileIsRejectedAndUnchanged) {
    expectRejected(write("letter", std::string(5000, 'x')), "not a cache file");
    expectRejected(write("note", std::string("short")), "not a cache file");
}

TEST_F(EnvCommandsTest, DamagedFileIsRejectedAndUnchanged) {
    SampleCacheFile file;
    file.point(20, 0x40000000);
    expectRejected(write("damaged", file.bytes()), "the file is damaged; see `qel cache check`: offset 20: ");
    SampleCacheFile unusable;
    unusable.set(52, 0U);
    expectRejected(write("unusable", unusable.bytes()), "the file is damaged; see `qel cache check`: offset 52: ");
}

TEST_F(EnvCommandsTest, FileWithUnreferencedBlockIsAccepted) {
    CacheFileBuilder file;
    file.addUsed(100);
    file.finish(file.addSnapshot(1, {}, 1));
    const std::string leaky = write("leaky", file.bytes());
    EXPECT_EQ(runTool({"env", "put", leaky, "-"}, message(env(eid(1), noEid, "one"))).code, ExitCode::success);
}

TEST_F(EnvCommandsTest, FileWithTooHighCountsIsAccepted) {
    SampleCacheFile file;
    file.set(file.secondRecord, 3);
    EXPECT_EQ(runTool({"env", "list", write("record", file.bytes())}).code, ExitCode::success);
    SampleCacheFile counter;
    counter.set(8, counter.word(8) + 8);
    EXPECT_EQ(runTool({"env", "list", write("high", counter.bytes())}).code, ExitCode::success);
    counter.set(8, counter.word(8) - 16);
    EXPECT_EQ(runTool({"env", "list", write("low", counter.bytes())}).code, ExitCode::success);
}

TEST_F(EnvCommandsTest, FileWithTooLowOrImpossibleCountIsRejected) {
    for (const std::int32_t count : {1, 0, -1, 0x7FFFFFFF}) {
        SampleCacheFile file;
        file.set(file.secondRecord, count);
        expectRejected(write("record", file.bytes()), "the file is damaged; see `qel cache check`: offset " +
                                                          std::to_string(file.secondRecord) + ": ");
    }
    SampleCacheFile unformatted;
    unformatted.set(8, 0);
    expectRejected(write("unformatted", unformatted.bytes()), "the file is damaged; see `qel cache check`: offset 8: ");
}

} // namespace
