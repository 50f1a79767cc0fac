#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QelFunctionalityCore/Vocabulary/QelVocLocalPrototype.h"
#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"
#include "support/TempFolder.h"

namespace Qel {

namespace {

/// Concurrent first use of the local agent's vocabulary.
class QelVocLocalPrototypeThreadsTest : public testing::Test {
protected:
    static constexpr int rounds = 30;

    QelVocLocalPrototypeThreadsTest() {
        setenv("QEL_ROOT", m_folder.path("").c_str(), 1);
        const TestSupport::TestMessage message(
            TestSupport::makeVocabulary({"", "1", {{"cpu", {"hardware"}}}, {{"load", {"cpu"}}}}));
        m_folder.write("etc/qel/qelagent.voc.linux", TestSupport::textOf(*message.get()));
    }
    ~QelVocLocalPrototypeThreadsTest() override { unsetenv("QEL_ROOT"); }

    /// Runs each function in its own thread, started at the same time.
    template <class... Work> static void runConcurrently(const Work&... works) {
        std::atomic<int> waiting{sizeof...(works)};
        const auto startTogether = [&waiting](const auto& work) {
            --waiting;
            while (waiting != 0)
                std::this_thread::yield();
            work();
        };
        std::vector<std::thread> threads;
        (threads.emplace_back([&] { startTogether(works); }), ...);
        for (std::thread& thread : threads)
            thread.join();
    }

    static bool hasLoad(QelVocIterator* iterator) { return std::unique_ptr<QelVocIterator>(iterator) != nullptr; }

    [[nodiscard]] std::string path(const std::string& name) const { return m_folder.path(name); }

private:
    TestSupport::TempFolder m_folder;
};

TEST_F(QelVocLocalPrototypeThreadsTest, ConcurrentFirstUseFindsVocabularyInEveryThread) {
    for (int round = 0; round < rounds; ++round) {
        QelVocLocalPrototype voc;
        std::atomic<int> found{0};
        const auto read = [&] { found += hasLoad(voc.readParameter("load")); };
        runConcurrently(read, read, read);
        EXPECT_EQ(found, 3);
    }
}

TEST_F(QelVocLocalPrototypeThreadsTest, ConstReaderFindsAllOrNothingDuringLoad) {
    for (int round = 0; round < rounds; ++round) {
        QelVocLocalPrototype voc;
        std::atomic<int> incomplete{0};
        runConcurrently([&] { EXPECT_TRUE(hasLoad(voc.readParameter("load"))); },
                        [&] {
                            const std::unique_ptr<QelVocIterator> iterator(std::as_const(voc).read());
                            incomplete += iterator && iterator->seekParameter("load") != 0;
                        },
                        [&] { static_cast<void>(voc.saveToFile(path("saved"))); });
        EXPECT_EQ(incomplete, 0);
    }
}

TEST_F(QelVocLocalPrototypeThreadsTest, ConcurrentResetAndSaveAreSerialised) {
    QelVocPrototype voc(TestSupport::makeVocabulary({"", "1"}));
    runConcurrently(
        [&] {
            for (int round = 0; round < rounds; ++round)
                voc.reset(TestSupport::makeVocabulary({"", "2"}));
        },
        [&] {
            for (int round = 0; round < rounds; ++round)
                EXPECT_EQ(voc.saveToFile(path("saved")), 0);
        });
}

} // namespace

} // namespace Qel
