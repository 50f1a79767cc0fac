#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tools/SampleEnvs.h"
#include "tools/ToolRun.h"
#include "tools/cachefile/CacheFileBuilder.h"

namespace {

/// Runs the program to test its exit codes and standard streams.
class ToolProcessTest : public ToolTest {
protected:
    /// Runs a shell command, with $QEL set to the program, and returns its exit code.
    [[nodiscard]] int shell(const std::string& command) const {
        const int status =
            std::system(("QEL='" QEL_PROGRAM "'; cd '" + path("") + "'; { " + command + "; } 2>errors").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(ToolProcessTest, ExitCodesMatchInterface) {
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

TEST_F(ToolProcessTest, ClosedOutputIsAFailure) {
    (void)write("sound", SampleCacheFile().bytes());
    EXPECT_EQ(shell("$QEL cache check sound >&-"), 4);
    EXPECT_EQ(read(path("errors")), "qel: cannot write to standard output\n");
}

TEST_F(ToolProcessTest, ClosedStreamsAreNotReusedForOpenedFiles) {
    const SampleCacheFile file;
    const std::string cache = write("sound", file.bytes());
    const std::string before = read(cache);
    EXPECT_EQ(shell("$QEL cache info sound <&- >&- 2>&-"), 4);
    EXPECT_EQ(read(cache), before);
}

TEST_F(ToolProcessTest, ClosedPipeIsAFailureNotASignal) {
    (void)write("sound", SampleCacheFile().bytes());
    // The read end is closed before the program starts.
    EXPECT_EQ(shell("mkfifo gone; { exec 3<>gone 4>gone; exec 3<&-; $QEL cache check sound >&4; }"), 4);
    EXPECT_EQ(read(path("errors")), "") << "early exit of a reader is not an error to report";
}

TEST_F(ToolProcessTest, EarlyReaderExitIsSilent) {
    EXPECT_EQ(shell("$QEL message names | head -n 1 >first"), 0);
    EXPECT_THAT(read(path("first")), testing::StartsWith("table "));
    EXPECT_EQ(read(path("errors")), "");
}

TEST_F(ToolProcessTest, OutOfMemoryIsAFailure) {
    constexpr int step = 8 * 1024; // KiB
    std::string text = "<message>";
    for (int i = 0; i < 100'000; ++i)
        text += "<name><a/></name>";
    (void)write("large.xml", text + "</message>");
    const auto limited = [&](int limit, const std::string& command) {
        return shell("ulimit -v " + std::to_string(limit) + "; " + command);
    };
    int limit = step;
    while (limit < 1024 * 1024 && limited(limit, "$QEL --version >version") != 0)
        limit += step;
    if (limit >= 1024 * 1024)
        GTEST_SKIP() << "the program does not start within the address space limit";

    EXPECT_EQ(limited(limit + step, "head -c 60000000 /dev/zero | $QEL message convert - out.xml --to text"), 4);
    EXPECT_EQ(read(path("errors")), "qel: out of memory\n");

    int failures = 0;
    int code = 0;
    for (; (code = limited(limit, "$QEL message convert large.xml out.xml --to text")) != 0; limit += step) {
        ASSERT_EQ(code, 4) << limit;
        ASSERT_THAT(read(path("errors")), testing::HasSubstr("out of memory")) << limit;
        ASSERT_FALSE(std::filesystem::exists(path("out.xml"))) << limit;
        ++failures;
    }
    EXPECT_GT(failures, 3);
    EXPECT_EQ(shell("$QEL message convert large.xml whole.xml --to text"), 0);
    EXPECT_EQ(read(path("out.xml")), read(path("whole.xml")));
}

TEST_F(ToolProcessTest, OutputIsNotWrittenIntoCacheOpenedOnClosedStream) {
    using namespace SampleEnvs;
    (void)write("1.xml", message(env(eid(1), noEid, "server", 1)));
    (void)write("2.xml", message(env(eid(1), noEid, "server", 2)));
    // `env watch` prints while it has the cache open, and ends at the first change because the write fails.
    EXPECT_EQ(shell("$QEL env put cache 1.xml || exit 1;"
                    "{ timeout 60 $QEL env watch cache --interval 0.001 >&-; echo $? >ended; } &"
                    "until [ -s ended ]; do $QEL env put cache 2.xml && $QEL env put cache 1.xml; done >puts"),
              0);
    EXPECT_EQ(read(path("ended")), "4\n");
    EXPECT_EQ(shell("$QEL cache check cache >/dev/null"), 0);
}

/// Runs `env watch` in a child process.
class WatchProcessTest : public ToolProcessTest {
protected:
    void SetUp() override {
        put(SampleEnvs::env(SampleEnvs::eid(1), SampleEnvs::noEid, "server"));
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        m_process = fork();
        if (m_process == 0) {
            dup2(ends[1], STDOUT_FILENO);
            const std::string cache = path("cache");
            execl(QEL_PROGRAM, "qel", "env", "watch", cache.c_str(), "--interval", "0.001", nullptr);
            _exit(127);
        }
        close(ends[1]);
        m_output = fdopen(ends[0], "r");
    }

    void TearDown() override { fclose(m_output); }

    void put(const std::string& env) const {
        ASSERT_EQ(runTool({"env", "put", path("cache"), "-"}, SampleEnvs::message(env)).code,
                  Qel::Tool::ExitCode::success);
    }

    [[nodiscard]] std::string nextLine() const {
        char line[200];
        return fgets(line, sizeof line, m_output) ? line : "";
    }

    /// Changes the server repeatedly until the child reports a change, which shows that it is watching.
    void waitUntilWatching() const {
        pollfd output{fileno(m_output), POLLIN, 0};
        for (int state = 2; poll(&output, 1, 1) == 0; ++state)
            put(SampleEnvs::env(SampleEnvs::eid(1), SampleEnvs::noEid, "server", state));
    }

    /// Sends a signal to the child and returns its wait status.
    [[nodiscard]] int terminate(int signal) const {
        int status = 0;
        kill(m_process, signal);
        waitpid(m_process, &status, 0);
        return status;
    }

    /// Whether the child is blocked in a write system call; true if /proc/PID/syscall is not available.
    [[nodiscard]] bool isWriting() const {
        std::string call;
        std::ifstream("/proc/" + std::to_string(m_process) + "/syscall") >> call;
        return call.empty() || call == std::to_string(SYS_write) || call == std::to_string(SYS_writev);
    }

    pid_t m_process = -1;
    FILE* m_output = nullptr;
};

TEST_F(WatchProcessTest, WatchPrintsChangesAsTheyHappen) {
    using namespace SampleEnvs;
    waitUntilWatching();
    EXPECT_EQ(nextLine(), "changed " + eid(1) + "  server  (status)\n");
    put(env(eid(2), eid(1), "machine"));
    std::string line = nextLine();
    while (line.starts_with("changed"))
        line = nextLine();
    EXPECT_EQ(line, "added   " + eid(2) + "  machine\n");
    EXPECT_EQ(runTool({"env", "remove", path("cache"), eid(2)}).code, Qel::Tool::ExitCode::success);
    EXPECT_EQ(nextLine(), "removed " + eid(2) + "  machine\n");
    (void)terminate(SIGKILL);
}

TEST_F(WatchProcessTest, InterruptedWatchSucceedsAndReleasesSnapshot) {
    waitUntilWatching();
    const int status = terminate(SIGINT);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_THAT(runTool({"cache", "info", path("cache")}).out, testing::ContainsRegex("snapshot references +1\n"));
}

TEST_F(WatchProcessTest, WatchInterruptedDuringWriteSucceeds) {
    // The pipe is not read, so it fills up and the child blocks in the middle of a line.
    fcntl(fileno(m_output), F_SETPIPE_SZ, 4096);
    std::string envs;
    for (unsigned i = 2; i < 200; ++i)
        envs += SampleEnvs::env(SampleEnvs::eid(i), SampleEnvs::eid(1), "machine");
    waitUntilWatching();
    put(envs);
    while (!isWriting())
        std::this_thread::yield();
    const int status = terminate(SIGTERM);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(runTool({"cache", "check", path("cache")}).code, Qel::Tool::ExitCode::success);
}

TEST_F(WatchProcessTest, WatchEndsWhenReaderExits) {
    waitUntilWatching();
    fclose(m_output);
    m_output = fopen("/dev/null", "r");
    put(SampleEnvs::env(SampleEnvs::eid(3), SampleEnvs::noEid, "other"));
    int status = 0;
    waitpid(m_process, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 4);
}

} // namespace
