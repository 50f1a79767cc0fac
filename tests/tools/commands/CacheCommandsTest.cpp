#include <atomic>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "qel/cachefile/CacheFile.h"
#include "tools/ToolRun.h"
#include "tools/cachefile/CacheFileBuilder.h"

namespace {

using Qel::Tool::ExitCode;
using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CacheCommandsTest : public ToolTest {
protected:
    void expectBadInput(const std::string& file, const std::string& message) const {
        for (const char* command : {"check", "info"}) {
            const ToolRun run = runTool({"cache", command, file});
            EXPECT_EQ(run.code, ExitCode::badInput);
            EXPECT_THAT(run.out, IsEmpty());
            EXPECT_EQ(run.err, "qel: " + file + ": " + message + "\n");
        }
    }
};

TEST_F(CacheCommandsTest, CheckReportsSoundFile) {
    SampleCacheFile file;
    const std::string path = write("cache", file.bytes());
    const ToolRun run = runTool({"cache", "check", path});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "held snapshot at " + std::to_string(file.heldSnapshot - 8) + ", records 2, readers 3\n" + path +
                           ": sound; records 2, snapshots 2, blocks 7, free blocks 2\n");
    EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(CacheCommandsTest, CheckPrintsOneLinePerFinding) {
    SampleCacheFile file;
    file.set(52, 0U);
    file.set(file.oldRecord, 7U);
    const ToolRun run = runTool({"cache", "check", write("cache", file.bytes())});
    EXPECT_EQ(run.code, ExitCode::negative);
    EXPECT_THAT(run.out, testing::StartsWith("52: damage: valid is 0: the file is marked as unusable\n" +
                                             std::to_string(file.oldRecord) +
                                             ": wrong count: the record's reference count is 7"));
    EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(CacheCommandsTest, CheckPrintsAdviceOncePerClass) {
    CacheFileBuilder file;
    const std::uint32_t lost = file.addUsed(100);
    const std::uint32_t alsoLost = file.addUsed(100);
    const std::uint32_t record = file.addRecord({1, 1}, 5);
    const std::uint32_t low = file.addRecord({2, 2}, 0);
    file.finish(file.addSnapshot(1, {{{1, 1}, record}, {{2, 2}, low}}));
    const ToolRun run = runTool({"cache", "check", write("cache", file.bytes())});
    EXPECT_EQ(run.code, ExitCode::negative);
    const auto at = [](std::uint32_t offset) { return std::to_string(offset) + ": "; };
    EXPECT_THAT(
        run.out,
        testing::StartsWith(
            at(lost - 8) + "harmless leak: unreferenced block at " + std::to_string(lost - 8) + ", 112 bytes\n" +
            at(alsoLost - 8) + "harmless leak: unreferenced block at " + std::to_string(alsoLost - 8) +
            ", 112 bytes\n" + at(record) +
            "wrong count: the record's reference count is 5, but the number of snapshots that list it is 1\n" +
            at(low) +
            "wrong count: the record's reference count is 0, but the number of snapshots that list it is 1\n"
            "harmless leak: no action needed; the bytes stay in use until the file is removed\n"
            "wrong count: no action needed; bytes may stay in use until the file is removed\n"
            "wrong count: stop the processes that use the file, then remove it; a write may free memory that is still "
            "in use, or abort the process\n"));
}

TEST_F(CacheCommandsTest, CheckJsonListsFindings) {
    SampleCacheFile file;
    file.set(52, 0U);
    const std::string path = write("cache", file.bytes());
    const ToolRun run = runTool({"cache", "check", path, "--json"});
    EXPECT_EQ(run.code, ExitCode::negative);
    const Json expected = Json::parse(R"({"file": ")" + path + R"(", "findings": [
        {"offset": 52, "kind": "header-constant", "class": "damage",
         "text": "valid is 0: the file is marked as unusable",
         "advice": "stop the processes that use the file, then remove it; the next process creates a new file"}],
        "records": 2, "snapshots": 2, "heldSnapshots": [{"offset": )" +
                                      std::to_string(file.heldSnapshot - 8) + R"(, "readers": 3, "records": 2}],
        "blocks": 7, "freeBlocks": 2})");
    EXPECT_EQ(Json::parse(run.out), expected);
}

TEST_F(CacheCommandsTest, CheckJsonOfSoundFileHasEmptyList) {
    const ToolRun run = runTool({"cache", "check", "--json", write("cache", SampleCacheFile().bytes())});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(Json::parse(run.out)["findings"], Json::array());
}

TEST_F(CacheCommandsTest, InfoPrintsHeaderAndSpaceUsage) {
    const SampleCacheFile file;
    const ToolRun run = runTool({"cache", "info", write("cache", file.bytes())});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, HasSubstr("offset  header field  value\n"
                                   "     0  next          " +
                                   std::to_string(file.gap) +
                                   "\n"
                                   "     4  blocks        1\n"));
    EXPECT_THAT(run.out, HasSubstr("    28  magic         0xCACEFE03\n"));
    EXPECT_THAT(run.out, HasSubstr("largest free block   "));
    EXPECT_THAT(run.out, testing::EndsWith("achievable size       512\n"));
}

TEST_F(CacheCommandsTest, InfoJsonHasAllFields) {
    const SampleCacheFile file;
    const std::string path = write("cache", file.bytes());
    const ToolRun run = runTool({"cache", "info", path, "--json"});
    EXPECT_EQ(run.code, ExitCode::success);
    const std::uint32_t free = 64 + 4096 - file.tail;
    const Json header{{"next", file.gap}, {"blocks", 1},         {"ttlAllocated", 4096 - free},
                      {"size", 4096},     {"headerSize", 56},    {"snapshot", file.currentSnapshot},
                      {"lock", 0},        {"magic", 0xCACEFE03}, {"headerBytes", 56},
                      {"keyBytes", 16},   {"revision", 225},     {"valueBytes", 92},
                      {"generation", 1},  {"valid", 1}};
    const Json expected{{"file", path},
                        {"header", header},
                        {"fileSize", 4096},
                        {"managed", 4096},
                        {"used", 4096 - free},
                        {"free", free},
                        {"largestFree", 4096 - file.tail},
                        {"records", 2},
                        {"snapshotRefCount", 1},
                        {"achievableSize", 512}};
    EXPECT_EQ(Json::parse(run.out), expected);
}

TEST_F(CacheCommandsTest, InfoPrintsNullPointer) {
    SampleCacheFile file;
    file.set(20, 1U);
    const std::string path = write("cache", file.bytes());
    EXPECT_TRUE(Json::parse(runTool({"cache", "info", path, "--json"}).out)["header"]["snapshot"].is_null());
    EXPECT_THAT(runTool({"cache", "info", path}).out, HasSubstr("snapshot      null\n"));
}

TEST_F(CacheCommandsTest, InfoDoesNotWarnAboutLeaks) {
    CacheFileBuilder file;
    file.addUsed(100);
    file.finish(file.addSnapshot(1, {}, 1));
    const ToolRun run = runTool({"cache", "info", write("cache", file.bytes())});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.err, IsEmpty());
}

TEST_F(CacheCommandsTest, InfoWarnsAboutDamage) {
    SampleCacheFile file;
    file.set(8, 1000U);
    const std::string path = write("cache", file.bytes());
    const ToolRun run = runTool({"cache", "info", path});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_THAT(run.out, HasSubstr("ttlAllocated  1000\n"));
    EXPECT_EQ(run.err, "qel: " + path + ": the file is damaged, so the numbers may be wrong; see `qel cache check`\n");
}

TEST_F(CacheCommandsTest, MissingFileIsBadInputAndIsNotCreated) {
    expectBadInput(path("none"), "No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(path("none")));
}

TEST_F(CacheCommandsTest, UnformattedFileIsNotFormatted) {
    const std::string empty = write("empty", std::string());
    const std::string zeros = write("zeros", std::string(4096, '\0'));
    expectBadInput(empty, "never formatted: no process has used the file as a cache yet");
    expectBadInput(zeros, "never formatted: no process has used the file as a cache yet");
    EXPECT_EQ(read(empty), "");
    EXPECT_EQ(read(zeros), std::string(4096, '\0'));
}

TEST_F(CacheCommandsTest, ForeignFileIsBadInput) {
    expectBadInput(write("letter", std::string("Dear cache,\n")), "not a cache file");
    expectBadInput(write("letters", std::string(5000, 'x')), "not a cache file");
}

TEST_F(CacheCommandsTest, FileLongerThanAnyCacheIsForeign) {
    const std::string file = write("cache", SampleCacheFile().bytes());
    std::filesystem::resize_file(file, std::uintmax_t{1} << 40);
    expectBadInput(file, "not a cache file");
}

TEST_F(CacheCommandsTest, DirectoryAndPipeAreBadInput) {
    std::filesystem::create_directory(path("folder"));
    expectBadInput(path("folder"), "not a regular file");
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    expectBadInput(path("pipe"), "not a regular file");
}

/// Whether another thread or process waits for the lock on the file.
bool hasLockWaiter(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0)
        return false;
    const std::string inode = ':' + std::to_string(status.st_ino) + ' ';
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        if (line.find("->") != std::string::npos && line.find(inode) != std::string::npos)
            return true;
    }
    return false;
}

TEST_F(CacheCommandsTest, CheckWaitsForWriterLock) {
    SampleCacheFile sample;
    sample.set(52, 0U);
    const std::string file = write("cache", sample.bytes());
    const int writer = open(file.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(writer, LOCK_EX), 0);
    ToolRun run;
    std::atomic<bool> done = false;
    std::thread reader([&] {
        run = runTool({"cache", "check", file});
        done = true;
    });
    while (!done && !hasLockWaiter(writer))
        std::this_thread::yield();
    // Mark the file as valid before releasing the lock.
    const std::uint32_t valid = 1;
    EXPECT_EQ(pwrite(writer, &valid, sizeof valid, 52), 4);
    EXPECT_EQ(flock(writer, LOCK_UN), 0);
    reader.join();
    close(writer);
    EXPECT_EQ(run.code, ExitCode::success) << run.out;
}

} // namespace
