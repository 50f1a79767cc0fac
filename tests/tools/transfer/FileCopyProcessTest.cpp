#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tools/TerminalRun.h"
#include "tools/ToolRun.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::size_t block = 0x80000;

/// Properties of a copy that need a separate process: terminal, resource limits and signals.
class FileCopyProcessTest : public ToolTest {
protected:
    /// Runs a shell command in which $QEL is the program, and returns its exit code.
    [[nodiscard]] int shell(const std::string& command) const {
        const int status = std::system(("QEL='" QEL_PROGRAM "'; cd '" + path("") + "'; " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(FileCopyProcessTest, ShowsNoProgressWhenStandardErrorIsAPipe) {
    (void)write("a", std::string(3 * block, 'x'));
    EXPECT_EQ(shell("$QEL file copy a b 2>&1 >/dev/null | cat >errors"), 0);
    EXPECT_EQ(read(path("errors")), "");
    EXPECT_EQ(read(path("b")).size(), 3 * block);
}

TEST_F(FileCopyProcessTest, ShowsBarBytesRateAndTimeOnTerminal) {
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

TEST_F(FileCopyProcessTest, FileSizeLimitSignalDoesNotKillTheProcess) {
    (void)write("a", std::string(3 * block, 'x'));
    // ulimit counts in units of 512 or 1024 bytes, depending on the shell.  Either way the limit is more than one block
    // and less than all three.
    EXPECT_EQ(shell("ulimit -f 1500; $QEL file copy a b 2>errors"), 4);
    const auto size = std::filesystem::file_size(path("b"));
    EXPECT_EQ(read(path("errors")), "qel: Cannot write to file \"b\": File too large [27]; copied " +
                                        std::to_string(size) + " bytes of 1572864 to 'b'\n");
    EXPECT_GT(size, block);
}

/// A copy in a process that the test can interrupt.
class InterruptedCopyTest : public FileCopyProcessTest {
protected:
    ~InterruptedCopyTest() override {
        if (m_process > 0)
            (void)endBy(SIGKILL);
    }

    void start(const std::string& from, const std::string& to) {
        const std::string errors = path("errors");
        m_process = fork();
        if (m_process == 0) {
            dup2(open(errors.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
            execl(QEL_PROGRAM, "qel", "file", "copy", from.c_str(), to.c_str(), "--overwrite", nullptr);
            _exit(127);
        }
        ASSERT_GT(m_process, 0);
    }
    /// True if /proc/PID/syscall is available.
    [[nodiscard]] static bool areCallsShown() { return access("/proc/self/syscall", R_OK) == 0; }
    /// Waits until the copy blocks in the call that opens one of its files.  Returns false if it exited instead.
    [[nodiscard]] bool waitUntilItOpens() const {
        long call = -1;
        unsigned long arguments[3]{};
        do {
            std::string line;
            if (!std::getline(std::ifstream("/proc/" + std::to_string(m_process) + "/syscall"), line))
                return false;
            // The file contains "running" between two calls.
            std::istringstream words(line);
            words >> call >> std::hex >> arguments[0] >> arguments[1] >> arguments[2];
            // The process opens no other files with O_NOCTTY.
        } while (call != SYS_openat || (arguments[2] & O_NOCTTY) == 0);
        return true;
    }
    [[nodiscard]] int endBy(int signal) {
        kill(m_process, signal);
        return exitCode();
    }
    [[nodiscard]] int exitCode() {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_process = -1;
};

TEST_F(InterruptedCopyTest, SignalEndsCopyThatWaitsForTheReaderOfAPipe) {
    if (!areCallsShown())
        GTEST_SKIP() << "the system does not show calls";
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    start(write("a", "content"), path("fifo"));
    ASSERT_TRUE(waitUntilItOpens());
    EXPECT_EQ(endBy(SIGINT), 4);
    EXPECT_EQ(read(path("errors")), "qel: interrupted\n");
}

/// A copy of a file on which the test holds a lease: open(2) blocks until the lease is released.
class LeasedCopyTest : public InterruptedCopyTest {
protected:
    // The kernel sends SIGIO to the holder of a lease when another process opens the file.
    LeasedCopyTest() : m_before(std::signal(SIGIO, SIG_IGN)) {}
    ~LeasedCopyTest() override {
        close(m_holder);
        std::signal(SIGIO, m_before);
    }

    void SetUp() override {
        m_holder = open(write("a", "content").c_str(), O_RDWR | O_CLOEXEC);
        if (!areCallsShown() || fcntl(m_holder, F_SETLEASE, F_WRLCK) != 0)
            GTEST_SKIP() << "no leases in this file system, or the system does not show calls";
    }

private:
    void (*m_before)(int);
    int m_holder = -1;
};

TEST_F(LeasedCopyTest, SignalEndsCopyThatWaitsForItsSourceWithoutBlamingTheSource) {
    start(path("a"), path("b"));
    ASSERT_TRUE(waitUntilItOpens());
    EXPECT_EQ(endBy(SIGTERM), 4);
    EXPECT_EQ(read(path("errors")), "qel: interrupted\n");
    EXPECT_FALSE(std::filesystem::exists(path("b")));
}

/// A copy into a pipe that the test reads from.
class CopyIntoAPipeTest : public InterruptedCopyTest {
protected:
    void SetUp() override {
        const std::string to = path("fifo");
        ASSERT_EQ(mkfifo(to.c_str(), 0600), 0);
        m_reader = open(to.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ASSERT_GE(m_reader, 0);
        fcntl(m_reader, F_SETFL, 0);
        start(write("a", std::string(4 * block, 'x')), to);
    }
    ~CopyIntoAPipeTest() override { close(m_reader); }

    /// Reads one whole block, so that the copy is in the middle of the next.
    void takeABlock() const {
        std::string bytes(block, ' ');
        for (std::size_t got = 0; got < block;) {
            const ssize_t more = ::read(m_reader, bytes.data() + got, block - got);
            // read(2) returns 0 until the pipe has been opened for writing.
            got += more > 0 ? static_cast<std::size_t>(more) : 0;
        }
    }
    /// Waits until the pipe is full, so that the copy blocks in write(2).
    void waitUntilItWrites() const {
        const int capacity = fcntl(m_reader, F_GETPIPE_SZ);
        for (int filled = 0; filled < capacity; std::this_thread::yield())
            ASSERT_EQ(ioctl(m_reader, FIONREAD, &filled), 0);
    }
    /// Reads the remaining bytes and returns their number.
    [[nodiscard]] std::size_t takeTheRest() const {
        std::string bytes(block, ' ');
        std::size_t all = 0;
        for (ssize_t more = 0; (more = ::read(m_reader, bytes.data(), bytes.size())) > 0;)
            all += static_cast<std::size_t>(more);
        return all;
    }
    /// The error message of a copy that was interrupted after `count` bytes.
    [[nodiscard]] std::string interruptedAfter(std::size_t count) const {
        return "qel: interrupted; copied " + std::to_string(count) + " bytes of 2097152 to '" + path("fifo") + "'\n";
    }

    int m_reader = -1;
};

TEST_F(CopyIntoAPipeTest, InterruptedCopyReportsAllBytesThatArrived) {
    takeABlock();
    waitUntilItWrites();
    EXPECT_EQ(endBy(SIGINT), 4);
    EXPECT_EQ(read(path("errors")), interruptedAfter(block + takeTheRest()));
}

TEST_F(CopyIntoAPipeTest, CopyInterruptedInFirstBlockReportsItsPart) {
    waitUntilItWrites();
    EXPECT_EQ(endBy(SIGTERM), 4);
    const std::size_t part = takeTheRest();
    EXPECT_LT(part, block);
    EXPECT_EQ(read(path("errors")), interruptedAfter(part));
}

TEST_F(CopyIntoAPipeTest, TruncatedSourceIsReportedWithTheBytesCopied) {
    waitUntilItWrites();
    // Truncate the source to the first block, which has been read already.
    ASSERT_EQ(truncate(path("a").c_str(), block), 0);
    (void)takeTheRest();
    EXPECT_EQ(exitCode(), 3);
    EXPECT_EQ(read(path("errors")), "qel: '" + path("a") +
                                        "' was truncated while it was being read; "
                                        "copied 524288 bytes of 2097152 to '" +
                                        path("fifo") + "'\n");
}

TEST_F(CopyIntoAPipeTest, ClosedPipeIsReportedInsteadOfKillingTheProcess) {
    waitUntilItWrites();
    close(m_reader);
    m_reader = -1;
    EXPECT_EQ(exitCode(), 4);
    EXPECT_THAT(read(path("errors")), HasSubstr("Cannot write to file"));
}

} // namespace
