#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"
#include "QelCommon/SettingsProvider.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

void log(const std::string& text) {
    Log2("module", "file", 1, "f", "f()").put(LogLevel::error, "%s", text.c_str());
}

[[noreturn]] void failCheck() {
    Qel::abort("module", "file", 7, "f", "f()");
}

/// Restores standard error as the log destination.
class LogSinkTest : public ::testing::Test {
protected:
    ~LogSinkTest() override { setLogSink({}); }
};

using LogSinkDeathTest = LogSinkTest;

TEST_F(LogSinkTest, RecordLoggedBySinkGoesToStandardError) {
    std::vector<std::string> texts;
    setLogSink([&](const LogRecord& record) {
        texts.push_back(record.text);
        log("in " + record.text);
    });
    CaptureStderr();
    log("one");
    log("two");
    EXPECT_EQ(GetCapturedStderr(), "module[1]: in one\nmodule[1]: in two\n");
    EXPECT_THAT(texts, ElementsAre("one", "two"));
}

TEST_F(LogSinkTest, SinkMayReplaceItself) {
    std::vector<std::string> texts;
    setLogSink([&texts, name = std::string("a name that std::function stores on the heap")](const LogRecord& record) {
        setLogSink([&texts](const LogRecord& later) { texts.push_back("new " + later.text); });
        texts.push_back("old " + record.text + ' ' + name.substr(0, 6));
    });
    log("one");
    log("two");
    EXPECT_THAT(texts, ElementsAre("old one a name", "new two"));
}

TEST_F(LogSinkTest, SinkMayReconfigureTheLog) {
    int calls = 0;
    setLogSink([&](const LogRecord&) {
        Debug::setSettingsProvider(nullptr);
        Debug::reconfigure();
        ++calls;
    });
    log("one");
    EXPECT_EQ(calls, 1);
}

TEST_F(LogSinkTest, SinkIsCalledAgainAfterThrowing) {
    int calls = 0;
    setLogSink([&](const LogRecord&) {
        if (++calls == 1)
            throw std::string("full");
    });
    EXPECT_THROW(log("one"), std::string);
    log("two");
    EXPECT_EQ(calls, 2);
}

TEST_F(LogSinkTest, CallsOfSinkFromSeveralThreadsDoNotOverlap) {
    constexpr int threadCount = 4;
    constexpr int recordCount = 200;
    std::atomic<int> running{0};
    int overlaps = 0;
    int calls = 0;
    setLogSink([&](const LogRecord&) {
        overlaps += running.fetch_add(1) != 0;
        std::this_thread::yield();
        ++calls;
        running.fetch_sub(1);
    });
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([] {
            for (int record = 0; record < recordCount; ++record)
                log("text");
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(overlaps, 0);
    EXPECT_EQ(calls, threadCount * recordCount);
}

TEST_F(LogSinkTest, LinesOfSeveralThreadsDoNotInterleaveOnStandardError) {
    const std::string letters = "abcd";
    constexpr int recordCount = 400;
    constexpr std::size_t textSize = 10'000; // more than stdio writes at once
    std::map<std::string, int> expected;
    std::vector<std::thread> threads;
    threads.reserve(letters.size());
    CaptureStderr();
    for (const char letter : letters) {
        const std::string text(textSize, letter);
        expected["module[1]: " + text] = recordCount;
        threads.emplace_back([text] {
            for (int record = 0; record < recordCount; ++record)
                log(text);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::istringstream lines(GetCapturedStderr());
    std::map<std::string, int> found;
    for (std::string line; std::getline(lines, line);)
        ++found[line];
    EXPECT_TRUE(found == expected);
}

TEST_F(LogSinkTest, SetLogSinkWaitsForCallInAnotherThread) {
    std::promise<void> entered;
    std::promise<void> replaced;
    std::future<void> isReplaced = replaced.get_future();
    std::atomic<bool> hasEnded{false};
    setLogSink([&](const LogRecord&) {
        entered.set_value();
        // Bounded, because setLogSink() does not return before this call ends.
        isReplaced.wait_for(std::chrono::milliseconds(100));
        hasEnded = true;
    });
    std::thread logging([] { log("one"); });
    entered.get_future().wait();
    setLogSink({});
    EXPECT_TRUE(hasEnded);
    replaced.set_value();
    logging.join();
}

// In the death tests an alarm terminates a process that hangs; the test then fails with an unexpected signal.
constexpr unsigned longestRun = 60;

TEST_F(LogSinkDeathTest, FailedCheckInSinkTerminatesTheProcess) {
    EXPECT_EXIT(
        {
            alarm(longestRun);
            setLogSink([](const LogRecord&) { failCheck(); });
            log("one");
        },
        ::testing::KilledBySignal(SIGABRT), "module: fatal: check failed at file:7, f\\(\\)");
}

TEST_F(LogSinkDeathTest, FailedCheckReachesTheSink) {
    EXPECT_EXIT(
        {
            alarm(longestRun);
            setLogSink([](const LogRecord& record) {
                dprintf(STDERR_FILENO, "sink %d %s\n", record.line, record.text.c_str());
            });
            failCheck();
        },
        ::testing::KilledBySignal(SIGABRT), "sink 7 fatal: check failed");
}

TEST_F(LogSinkDeathTest, FailedCheckIsNotLoggedAtLevel0) {
    EXPECT_EXIT(
        {
            alarm(longestRun);
            setLogSink([](const LogRecord&) { _exit(1); });
            debug_level = 0;
            failCheck();
        },
        ::testing::KilledBySignal(SIGABRT), "fatal: check failed");
}

TEST_F(LogSinkDeathTest, FailedCheckWhileAnotherThreadIsInTheSinkTerminatesTheProcess) {
    EXPECT_EXIT(
        {
            alarm(longestRun);
            std::promise<void> entered;
            setLogSink([&](const LogRecord&) {
                entered.set_value();
                pause();
            });
            std::thread logging([] { log("one"); });
            entered.get_future().wait();
            failCheck();
        },
        ::testing::KilledBySignal(SIGABRT), "module\\[1\\]: fatal: check failed");
}

} // namespace

} // namespace Qel
