#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>

#include "TerminalRun.h"
#include "ToolRun.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::size_t block = 0x80000;

/// What of a copy only a process shows: its terminal, its limits, its signals.
class FileCopyProcessTest : public ToolTest {
protected:
    /// Runs a shell command in which $QEL is the program; its exit code.
    [[nodiscard]] int shell(const std::string& command) const {
        const int status = std::system(("QEL='" QEL_PROGRAM "'; cd '" + path("") + "'; " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(FileCopyProcessTest, IntoAPipeGoesNoProgress) {
    (void)write("a", std::string(3 * block, 'x'));
    EXPECT_EQ(shell("$QEL file copy a b 2>&1 >/dev/null | cat >errors"), 0);
    EXPECT_EQ(read(path("errors")), "");
    EXPECT_EQ(read(path("b")).size(), 3 * block);
}

TEST_F(FileCopyProcessTest, OnATerminalThereIsABarWithBytesRateAndTime) {
    const std::string from = write("a", std::string(3 * block, 'x'));
    const std::string to = path("b");
    const auto run = Qel::Tool::runOnTerminal("'" QEL_PROGRAM "' file copy '" + from + "' '" + to + "'");
    if (!run)
        GTEST_SKIP() << "no terminals here";
    EXPECT_EQ(run->status, 0);
    EXPECT_THAT(run->out, ContainsRegex("\\[ +\\]   0%  0 B of 1.5 MiB"));
    EXPECT_THAT(run->out, ContainsRegex("\\[=+\\] 100%  1.5 MiB of 1.5 MiB  [0-9.]+ [KMG]iB/s  0:0[0-9]"));
    EXPECT_THAT(run->out, HasSubstr("copied 1572864 bytes"));
}

TEST_F(FileCopyProcessTest, ALimitOnTheSizeIsAFailureAndNoDeathBySignal) {
    (void)write("a", std::string(3 * block, 'x'));
    // ulimit counts blocks of 512 bytes in one shell and of 1024 in another: it is more than one of ours, less than
    // all.
    EXPECT_EQ(shell("ulimit -f 1500; $QEL file copy a b 2>errors"), 4);
    EXPECT_EQ(read(path("errors")), "qel: Cannot write to file \"b\": No space left on device [28]; 524288 bytes of "
                                    "1572864 are in 'b'\n");
    EXPECT_GT(std::filesystem::file_size(path("b")), block);
}

/// A copy into a pipe that is read from here.
class CopyIntoAPipeTest : public FileCopyProcessTest {
protected:
    void SetUp() override {
        const std::string from = write("a", std::string(4 * block, 'x'));
        const std::string to = path("fifo");
        const std::string errors = path("errors");
        ASSERT_EQ(mkfifo(to.c_str(), 0600), 0);
        m_reader = open(to.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ASSERT_GE(m_reader, 0);
        fcntl(m_reader, F_SETFL, 0);
        m_process = fork();
        if (m_process == 0) {
            dup2(open(errors.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
            execl(QEL_PROGRAM, "qel", "file", "copy", from.c_str(), to.c_str(), "--overwrite", nullptr);
            _exit(127);
        }
        ASSERT_GT(m_process, 0);
    }
    ~CopyIntoAPipeTest() override { close(m_reader); }

    /// Takes the whole of one block, so that the copy is in the next.
    void takeABlock() const {
        std::string bytes(block, ' ');
        for (std::size_t got = 0; got < block;) {
            const ssize_t more = ::read(m_reader, bytes.data() + got, block - got);
            // The pipe may not have been opened for writing yet.
            got += more > 0 ? static_cast<std::size_t>(more) : 0;
        }
    }
    /// Waits until the pipe is full, and so the copy in the middle of a write.
    void waitUntilItWrites() const {
        const int capacity = fcntl(m_reader, F_GETPIPE_SZ);
        for (int filled = 0; filled < capacity; std::this_thread::yield())
            ASSERT_EQ(ioctl(m_reader, FIONREAD, &filled), 0);
    }
    /// Takes what comes until nothing more does.
    void takeTheRest() const {
        std::string bytes(block, ' ');
        while (::read(m_reader, bytes.data(), bytes.size()) > 0) {
        }
    }
    [[nodiscard]] int endBy(int signal) const {
        kill(m_process, signal);
        return exitCode();
    }
    [[nodiscard]] int exitCode() const {
        int status = 0;
        waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int m_reader = -1;
    pid_t m_process = -1;
};

TEST_F(CopyIntoAPipeTest, AnInterruptedOneTellsHowFarItCame) {
    takeABlock();
    waitUntilItWrites();
    EXPECT_EQ(endBy(SIGINT), 4);
    EXPECT_EQ(read(path("errors")), "qel: interrupted; 524288 bytes of 2097152 are in '" + path("fifo") + "'\n");
}

TEST_F(CopyIntoAPipeTest, OneInterruptedInTheFirstBlockCameNowhere) {
    waitUntilItWrites();
    EXPECT_EQ(endBy(SIGTERM), 4);
    EXPECT_EQ(read(path("errors")), "qel: interrupted; 0 bytes of 2097152 are in '" + path("fifo") + "'\n");
}

TEST_F(CopyIntoAPipeTest, ASourceThatBecomesShorterIsToldWithHowFarItCame) {
    waitUntilItWrites();
    // The first block has been read, and is all that is left.
    ASSERT_EQ(truncate(path("a").c_str(), block), 0);
    takeTheRest();
    EXPECT_EQ(exitCode(), 3);
    EXPECT_EQ(read(path("errors")), "qel: '" + path("a") +
                                        "' became shorter while it was read; "
                                        "524288 bytes of 2097152 are in '" +
                                        path("fifo") + "'\n");
}

TEST_F(CopyIntoAPipeTest, AReaderThatGoesAwayIsAFailureAndNoDeathBySignal) {
    waitUntilItWrites();
    close(m_reader);
    m_reader = -1;
    EXPECT_EQ(exitCode(), 4);
    EXPECT_THAT(read(path("errors")), HasSubstr("Cannot write to file"));
}

} // namespace
