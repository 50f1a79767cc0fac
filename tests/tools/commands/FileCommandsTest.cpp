#include <csignal>
#include <cstdlib>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ChildProcess.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::HasSubstr;

class FileCopyTest : public ToolTest {
protected:
    FileCopyTest() { setenv("QEL_ROOT", path("root").c_str(), 1); }
    ~FileCopyTest() override { unsetenv("QEL_ROOT"); }

    [[nodiscard]] ToolRun copy(const std::string& from, const std::string& to,
                               const std::vector<std::string>& options = {}) const {
        std::vector<std::string> words{"file", "copy", from, to};
        words.insert(words.end(), options.begin(), options.end());
        return runTool(words);
    }
    /// Copies file a to file b with these options and returns the content of b.
    [[nodiscard]] std::string copied(const std::vector<std::string>& options) const {
        const ToolRun run = copy(path("a"), path("b"), options);
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        EXPECT_EQ(run.err, "");
        return read(path("b"));
    }
    void expectFailure(const ToolRun& run, ExitCode code, const std::string& error) const {
        EXPECT_EQ(run.code, code);
        EXPECT_EQ(run.err, "qel: " + error + '\n');
        EXPECT_EQ(run.out, "");
    }
    [[nodiscard]] bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
};

TEST_F(FileCopyTest, CopiesContentToNewFile) {
    const std::string content = std::string(3 << 19U, 'x') + "end";
    (void)write("a", content);
    const ToolRun run = copy(path("a"), path("b"));
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "copied 1572867 bytes to '" + path("b") + "'\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(read(path("b")), content);
}

TEST_F(FileCopyTest, EscapesControlCharactersInName) {
    (void)write("a", "x");
    const ToolRun run = copy(path("a"), path("b\n\x1B[2J\u202E"));
    EXPECT_EQ(run.out, "copied 1 byte to '" + path("b\\n\\x1b[2J\\xe2\\x80\\xae") + "'\n");
}

TEST_F(FileCopyTest, CopiesEmptyFile) {
    (void)write("a", "");
    EXPECT_EQ(copied({}), "");
    EXPECT_TRUE(exists("b"));
}

TEST_F(FileCopyTest, CopiesModeMinusUmaskAndSetUserId) {
    (void)write("a", "x");
    ASSERT_EQ(chmod(path("a").c_str(), 06757), 0);
    const mode_t before = umask(022);
    (void)copied({});
    EXPECT_EQ(umask(before), 022U);
    struct stat status {};
    ASSERT_EQ(stat(path("b").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0755U);
}

TEST_F(FileCopyTest, ExistingFileIsUnchangedByDefault) {
    (void)write("a", "new");
    (void)write("b", "old");
    expectFailure(copy(path("a"), path("b")), ExitCode::failed,
                  "Cannot open dst file \"" + path("b") + "\": File exists [17]");
    EXPECT_EQ(read(path("b")), "old");
}

TEST_F(FileCopyTest, OverwriteStartsAtOffsetZeroAndReportsKeptBytes) {
    (void)write("a", "new");
    (void)write("b", "old content");
    const ToolRun run = copy(path("a"), path("b"), {"--overwrite"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "copied 3 bytes to '" + path("b") + "', keeping 8 bytes after the copy\n");
    EXPECT_EQ(read(path("b")), "new content");
}

TEST_F(FileCopyTest, AppendAndTruncateAcceptExistingFile) {
    for (const bool overwrite : {false, true}) {
        std::vector<std::string> append{"--append"};
        std::vector<std::string> truncate{"--truncate"};
        if (overwrite) {
            append.emplace_back("--overwrite");
            truncate.emplace_back("--overwrite");
        }
        (void)write("a", "new");
        (void)write("b", "old content");
        EXPECT_EQ(copied(append), "old contentnew");
        EXPECT_EQ(copied(truncate), "new");
    }
}

TEST_F(FileCopyTest, OnlyOverwriteReportsKeptBytes) {
    (void)write("a", "new");
    for (const char* const option : {"--append", "--truncate"}) {
        (void)write("b", "old content");
        EXPECT_EQ(copy(path("a"), path("b"), {option}).out, "copied 3 bytes to '" + path("b") + "'\n");
    }
}

TEST_F(FileCopyTest, FileWithReportedSizeZeroIsCopiedToTheEnd) {
    const std::string source = "/proc/version";
    const std::string content = read(source);
    if (content.empty())
        GTEST_SKIP() << source << " is not available";
    EXPECT_EQ(std::filesystem::file_size(source), 0U);
    const ToolRun run = copy(source, path("b"));
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_EQ(run.out, "copied " + std::to_string(content.size()) + " bytes to '" + path("b") + "'\n");
    EXPECT_EQ(read(path("b")), content);
}

TEST_F(FileCopyTest, FileWithWrongReportedSizeIsCopiedToTheEnd) {
    const std::string source = "/sys/devices/system/cpu/online";
    const std::string content = read(source);
    if (content.empty())
        GTEST_SKIP() << source << " is not available";
    EXPECT_GT(std::filesystem::file_size(source), content.size());
    EXPECT_EQ(copy(source, path("b")).code, ExitCode::success);
    EXPECT_EQ(read(path("b")), content);
}

TEST_F(FileCopyTest, FailedReadLeavesDestinationUnchanged) {
    // Reading /proc/self/mem at offset 0 fails with EIO, since no page is mapped there.
    (void)write("b", "old");
    for (const char* const option : {"--truncate", "--append", "--overwrite"}) {
        expectFailure(copy("/proc/self/mem", path("b"), {option}), ExitCode::badInput,
                      "Cannot read from file \"/proc/self/mem\": Input/output error [5]");
        EXPECT_EQ(read(path("b")), "old");
    }
    EXPECT_EQ(copy("/proc/self/mem", path("c")).code, ExitCode::badInput);
    EXPECT_FALSE(exists("c"));
}

TEST_F(FileCopyTest, AppendAndTruncateAreMutuallyExclusive) {
    (void)write("a", "new");
    expectFailure(copy(path("a"), path("b"), {"--append", "--truncate"}), ExitCode::usage,
                  "options '--append' and '--truncate' cannot be used together");
}

TEST_F(FileCopyTest, MissingSourceCreatesNothing) {
    expectFailure(copy(path("none"), path("b")), ExitCode::badInput,
                  "Cannot open src file \"" + path("none") + "\": No such file or directory [2]");
    EXPECT_FALSE(exists("b"));
}

TEST_F(FileCopyTest, DirectoryIsRejectedAsSource) {
    std::filesystem::create_directory(path("folder"));
    expectFailure(copy(path("folder"), path("b")), ExitCode::badInput, "'" + path("folder") + "' is a directory");
    EXPECT_FALSE(exists("b"));
}

TEST_F(FileCopyTest, SpecialFileIsRejectedAsSource) {
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    expectFailure(copy(path("fifo"), path("b")), ExitCode::badInput, "'" + path("fifo") + "' is not a regular file");
}

TEST_F(FileCopyTest, DirectoryIsRejectedAsDestination) {
    (void)write("a", "new");
    std::filesystem::create_directory(path("folder"));
    expectFailure(copy(path("a"), path("folder"), {"--overwrite"}), ExitCode::failed,
                  "Cannot open dst file \"" + path("folder") + "\": Is a directory [21]");
}

TEST_F(FileCopyTest, MissingDirectoryIsNotCreated) {
    (void)write("a", "new");
    expectFailure(copy(path("a"), path("none/b")), ExitCode::failed,
                  "Cannot open dst file \"" + path("none/b") + "\": No such file or directory [2]");
}

TEST_F(FileCopyTest, RejectsCopyOntoItself) {
    (void)write("a", "content");
    std::filesystem::create_hard_link(path("a"), path("b"));
    for (const char* const option : {"--truncate", "--append", "--overwrite"}) {
        expectFailure(copy(path("a"), path("b"), {option}), ExitCode::badInput,
                      "'" + path("a") + "' and '" + path("b") + "' are the same file");
        EXPECT_EQ(read(path("a")), "content");
    }
}

TEST_F(FileCopyTest, ReportsBytesCopiedBeforeDiskFull) {
    (void)write("a", "new");
    expectFailure(copy(path("a"), "/dev/full", {"--overwrite"}), ExitCode::failed,
                  "Cannot write to file \"/dev/full\": No space left on device [28]; "
                  "copied 0 bytes of 3 to '/dev/full'");
}

TEST_F(FileCopyTest, SourceWithoutPermissionCreatesNothing) {
    (void)write("a", "secret");
    ASSERT_EQ(chmod(path("").c_str(), 0777), 0);
    ASSERT_EQ(chmod(path("a").c_str(), 0), 0);
    constexpr uid_t nobody = 65534;
    EXPECT_EQ(Qel::TestSupport::inChild([this] {
                  if (geteuid() == 0 && seteuid(nobody) != 0)
                      return -1;
                  const ToolRun run = copy(path("a"), path("b"));
                  const std::string error = "qel: Cannot open src file \"" + path("a") + "\": Permission denied [13]\n";
                  return run.code == ExitCode::badInput && run.err == error ? 0 : 1;
              }),
              0);
    EXPECT_FALSE(exists("b"));
}

TEST_F(FileCopyTest, PathMayStartInUploadFolder) {
    (void)write("a", "new");
    const std::string uploads = path("root/var/lib/qel/clients/anna/uploads");
    const ToolRun run = copy(path("a"), "$SESSION$/b", {"--session", "anna"});
    EXPECT_EQ(run.code, ExitCode::success) << run.err;
    EXPECT_EQ(read(uploads + "/b"), "new");
    EXPECT_EQ(copy("$SESSION$/b", path("c"), {"--session", "anna"}).code, ExitCode::success);
    EXPECT_EQ(read(path("c")), "new");
}

TEST_F(FileCopyTest, UploadFolderRequiresSession) {
    (void)write("a", "new");
    expectFailure(copy(path("a"), "$SESSION$/b"), ExitCode::usage,
                  "'$SESSION$/b': --session is required to locate the upload folder");
}

TEST_F(FileCopyTest, RejectsPathOutOfUploadFolder) {
    (void)write("a", "new");
    const std::string uploads = path("root/var/lib/qel/clients/anna/uploads");
    std::filesystem::create_directories(uploads + "/x");
    std::filesystem::create_directory_symlink(path(""), uploads + "/link");
    for (const std::string out :
         {"$SESSION$/../b", "$SESSION$/..", "$SESSION$..", "$SESSION$/x/../../b", "$SESSION$/x/../../../../b",
          "$SESSION$b", "$SESSION$/link/b", "$SESSION$/../../bert/uploads/b"}) {
        expectFailure(copy(path("a"), out, {"--session", "anna"}), ExitCode::badInput,
                      "'" + out + "' leads out of the upload folder");
        expectFailure(copy(out, path("b"), {"--session", "anna"}), ExitCode::badInput,
                      "'" + out + "' leads out of the upload folder");
    }
    EXPECT_FALSE(exists("b"));
}

TEST_F(FileCopyTest, RejectsDanglingLinkOutOfUploadFolder) {
    (void)write("a", "new");
    const std::string uploads = path("root/var/lib/qel/clients/anna/uploads");
    std::filesystem::create_directories(uploads);
    std::filesystem::create_symlink(path("b"), uploads + "/absolute");
    std::filesystem::create_symlink("../b", uploads + "/relative");
    for (const std::string out : {"$SESSION$/absolute", "$SESSION$/relative"})
        for (const char* const option : {"--overwrite", "--append", "--truncate"})
            expectFailure(copy(path("a"), out, {option, "--session", "anna"}), ExitCode::badInput,
                          "'" + out + "' leads out of the upload folder");
    EXPECT_FALSE(exists("b"));
    EXPECT_FALSE(std::filesystem::exists(uploads + "/../b"));
}

TEST_F(FileCopyTest, FollowsLinkInsideUploadFolder) {
    (void)write("a", "new");
    const std::string uploads = path("root/var/lib/qel/clients/anna/uploads");
    std::filesystem::create_directories(uploads);
    std::filesystem::create_symlink("b", uploads + "/link");
    EXPECT_EQ(copy(path("a"), "$SESSION$/link", {"--append", "--session", "anna"}).code, ExitCode::success);
    EXPECT_EQ(read(uploads + "/b"), "new");
    EXPECT_EQ(copy("$SESSION$/link", path("c"), {"--session", "anna"}).code, ExitCode::success);
    EXPECT_EQ(read(path("c")), "new");
}

TEST_F(FileCopyTest, AcceptsPathThatReturnsIntoUploadFolder) {
    (void)write("a", "new");
    std::filesystem::create_directories(path("root/var/lib/qel/clients/anna/uploads/x"));
    EXPECT_EQ(copy(path("a"), "$SESSION$/x/../b", {"--session", "anna"}).code, ExitCode::success);
    EXPECT_EQ(read(path("root/var/lib/qel/clients/anna/uploads/b")), "new");
}

TEST_F(FileCopyTest, InvalidSessionNameIsBadInput) {
    (void)write("a", "new");
    expectFailure(copy(path("a"), "$SESSION$/b", {"--session", "../anna"}), ExitCode::badInput,
                  "invalid client name '../anna'");
}

} // namespace
