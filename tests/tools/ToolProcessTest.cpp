#include <cstdlib>
#include <sys/wait.h>

#include <gmock/gmock.h>

#include "CacheFileBuilder.h"
#include "ToolRun.h"

namespace {

/// What only the program itself shows: its exit codes and its standard streams.
class ToolProcessTest : public ToolTest {
protected:
    /// Runs a shell command in which $QEL is the program; its exit code.
    [[nodiscard]] int shell(const std::string& command) const {
        const int status =
            std::system(("QEL='" QEL_PROGRAM "'; cd '" + path("") + "'; { " + command + "; } 2>errors").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(ToolProcessTest, ExitCodesAreThoseThatScriptsRelyOn) {
    SampleCacheFile file;
    (void)write("sound", file.bytes());
    file.set(52, 0U);
    (void)write("damaged", file.bytes());
    EXPECT_EQ(shell("$QEL cache check sound >/dev/null"), 0);
    EXPECT_EQ(shell("$QEL cache check damaged >/dev/null"), 1);
    EXPECT_EQ(shell("$QEL cache check"), 2);
    EXPECT_EQ(shell("$QEL cache check none"), 3);
    EXPECT_EQ(shell("$QEL cache check sound >/dev/full"), 4);
}

TEST_F(ToolProcessTest, AClosedOutputIsAFailure) {
    (void)write("sound", SampleCacheFile().bytes());
    EXPECT_EQ(shell("$QEL cache check sound >&-"), 4);
    EXPECT_EQ(read(path("errors")), "qel: standard output can't be written\n");
}

TEST_F(ToolProcessTest, ClosedStreamsAreNotReplacedByTheFileThatIsOpened) {
    const SampleCacheFile file;
    const std::string cache = write("sound", file.bytes());
    const std::string before = read(cache);
    EXPECT_EQ(shell("$QEL cache info sound <&- >&- 2>&-"), 4);
    EXPECT_EQ(read(cache), before);
}

TEST_F(ToolProcessTest, AReaderThatWentAwayIsAFailureAndNoDeathBySignal) {
    (void)write("sound", SampleCacheFile().bytes());
    // The pipe's reader has ended for sure when the program is started.
    EXPECT_EQ(shell("mkfifo gone; { exec 3<>gone 4>gone; exec 3<&-; $QEL cache check sound >&4; }"), 4);
}

} // namespace
