#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelFileLock.h"
#include "tools/ToolRun.h"

namespace {

using Json = nlohmann::ordered_json;
using Qel::Tool::ExitCode;

/// A process that runs the tool.
class ToolProcess {
public:
    explicit ToolProcess(std::vector<std::string> words) {
        words.insert(words.begin(), "qel");
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        m_process = fork();
        if (m_process == 0) {
            const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
            dup2(null, STDIN_FILENO);
            dup2(null, STDOUT_FILENO);
            execv(QEL_PROGRAM, arguments.data());
            _exit(127);
        }
    }
    ToolProcess(const ToolProcess&) = delete;
    ToolProcess& operator=(const ToolProcess&) = delete;
    ~ToolProcess() {
        if (!m_code)
            kill(m_process, SIGKILL);
        (void)wait();
    }

    int wait() {
        int status = 0;
        if (!m_code && waitpid(m_process, &status, 0) == m_process)
            m_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return m_code.value_or(-1);
    }

    /// Returns true once the process blocks on a file lock, or false once it has exited.
    bool waitsForLock() {
        const std::string file = "/proc/" + std::to_string(m_process) + "/syscall";
        for (;;) {
            std::string call;
            std::ifstream(file) >> call;
            if (call == std::to_string(SYS_flock))
                return true;
            int status = 0;
            if (waitpid(m_process, &status, WNOHANG) == m_process) {
                m_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
                return false;
            }
            std::this_thread::yield();
        }
    }

private:
    pid_t m_process = -1;
    std::optional<int> m_code;
};

class FileLockProcessTest : public ToolTest {
protected:
    /// Runs all command lines concurrently, each in its own process.
    static void runAll(const std::vector<std::vector<std::string>>& commands) {
        std::vector<std::unique_ptr<ToolProcess>> processes;
        processes.reserve(commands.size());
        for (const auto& words : commands)
            processes.push_back(std::make_unique<ToolProcess>(words));
        for (const auto& process : processes)
            EXPECT_EQ(process->wait(), 0);
    }
    [[nodiscard]] std::string vocabulary(const std::string& name) const {
        return write(name, "<message><vocabulary><name>" + name +
                               "</name><parameter><id>vocversion</id><data>1</data>"
                               "</parameter></vocabulary></message>");
    }
    [[nodiscard]] std::size_t countIn(const std::vector<std::string>& words) const {
        return Json::parse(runTool(words).out).size();
    }
    [[nodiscard]] std::ptrdiff_t hiddenFiles() const {
        const std::filesystem::directory_iterator all(path(""));
        return std::count_if(begin(all), end(all),
                             [](const auto& each) { return each.path().filename().string().starts_with('.'); });
    }

    std::string file = path("file");
};

TEST_F(FileLockProcessTest, ConcurrentConfigSetsLoseNoSetting) {
    std::vector<std::vector<std::string>> commands;
    for (int i = 0; i < 40; ++i)
        commands.push_back({"config", "set", file, "/system/option" + std::to_string(i), "1"});
    runAll(commands);
    EXPECT_EQ(countIn({"config", "list", file, "/system", "--json"}), commands.size());
    EXPECT_EQ(hiddenFiles(), 0);
}

TEST_F(FileLockProcessTest, ConcurrentVocabularyChangesLoseNoVocabulary) {
    std::vector<std::vector<std::string>> commands;
    for (int i = 0; i < 20; ++i)
        commands.push_back({"voc", "merge", file, vocabulary("voc" + std::to_string(i))});
    runAll(commands);
    EXPECT_EQ(countIn({"voc", "list", file, "--json"}), commands.size());

    commands.clear();
    for (int i = 0; i < 10; ++i) {
        commands.push_back({"voc", "erase", file, "voc" + std::to_string(i), "1"});
        commands.push_back({"voc", "merge", file, vocabulary("new" + std::to_string(i))});
    }
    runAll(commands);
    EXPECT_EQ(countIn({"voc", "list", file, "--json"}), 20U);
    EXPECT_EQ(hiddenFiles(), 0);
}

TEST_F(FileLockProcessTest, ConcurrentPoolAddsLoseNoAddress) {
    std::vector<std::vector<std::string>> commands;
    for (int i = 0; i < 20; ++i)
        commands.push_back({"pool", "add", file, "10.0.0." + std::to_string(2 * i + 1)});
    runAll(commands);
    EXPECT_EQ(Json::parse(runTool({"pool", "show", file, "--json"}).out)["count"], commands.size());
    EXPECT_EQ(hiddenFiles(), 0);
}

TEST_F(FileLockProcessTest, CommandsThatChangeAFileWaitForItsLock) {
    std::string call;
    std::ifstream("/proc/self/syscall") >> call;
    if (call.empty())
        GTEST_SKIP() << "the kernel does not report system calls";
    const std::string configuration = write("configuration", read(QEL_EXAMPLES "/agent.conf"));
    const std::string map = vocabulary("map");
    const std::string pool = path("pool");
    const std::string options = path("options");
    ASSERT_EQ(runTool({"pool", "add", pool, "10.0.0.1"}).code, ExitCode::success);
    ASSERT_EQ(runTool({"message", "names", "--save-options", options}).code, ExitCode::success);
    std::filesystem::create_symlink("map", path("link"));
    struct Case {
        std::string locked;
        std::vector<std::string> words;
    };
    for (const Case& each :
         {Case{configuration, {"config", "set", configuration, "/system/log_level", "1"}},
          Case{path("missing"), {"config", "set", path("missing"), "/system/log_level", "1"}},
          Case{map, {"voc", "merge", map, vocabulary("other")}},
          Case{map, {"voc", "merge", path("link"), vocabulary("other")}},
          Case{map, {"voc", "erase", map, "other", "1"}}, Case{pool, {"pool", "add", pool, "10.0.0.9"}},
          Case{pool, {"message", "convert", pool, pool, "--to", "binary"}},
          Case{options, {"message", "names", "--json", "--options", options, "--save-options", options}}}) {
        Qel::QelFileLock lock;
        ASSERT_EQ(lock.acquire(each.locked), 0) << Qel::getErrorMessage();
        ToolProcess process(each.words);
        EXPECT_TRUE(process.waitsForLock()) << testing::PrintToString(each.words);
        lock.release();
        EXPECT_EQ(process.wait(), 0) << testing::PrintToString(each.words);
    }
    EXPECT_EQ(hiddenFiles(), 0);
}

TEST_F(FileLockProcessTest, CommandsThatOnlyReadOrOnlyWriteDoNotWait) {
    const std::string configuration = write("configuration", read(QEL_EXAMPLES "/agent.conf"));
    Qel::QelFileLock lock;
    ASSERT_EQ(lock.acquire(configuration), 0) << Qel::getErrorMessage();
    for (const std::vector<std::string>& words : {std::vector<std::string>{"config", "list", configuration},
                                                  {"message", "convert", configuration, file, "--to", "binary"},
                                                  {"message", "convert", file, configuration, "--to", "text"}}) {
        ToolProcess process(words);
        ASSERT_FALSE(process.waitsForLock()) << testing::PrintToString(words);
        EXPECT_EQ(process.wait(), 0) << testing::PrintToString(words);
    }
}

TEST_F(FileLockProcessTest, LockOfTheOptionsIsReleasedBeforeTheCommandRuns) {
    const std::string options = path("options");
    ASSERT_EQ(runTool({"message", "convert", options, options, "--to", "text", "--save-options", options}).code,
              ExitCode::success);
    ToolProcess process({"message", "convert", "--options", options, "--save-options", options});
    ASSERT_FALSE(process.waitsForLock());
    EXPECT_EQ(process.wait(), 0);
}

} // namespace
