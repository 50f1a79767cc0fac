// Changes that are cut off between any two instructions, as by a kill, and what the file contains then.

#include <csignal>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

/// The bytes of a cache file that another process writes, read as often as wanted.
class CacheImage {
public:
    explicit CacheImage(std::string bytes) : m_bytes(std::move(bytes)) {}

    /// The records by their keys, each as its bytes; empty with `problem` set if one isn't a block of its own in use.
    std::map<std::string, std::string> records(std::string& problem) const {
        std::map<std::string, std::string> found;
        std::set<std::uint32_t> blocks;
        if (!isTiled()) {
            problem = "blocks don't tile the heap";
            return {};
        }
        const std::uint32_t snapshot = target(20);
        if (isFree(snapshot)) {
            problem = "the header's snapshot is free";
            return {};
        }
        const std::uint32_t count = word(snapshot + 4);
        const std::uint32_t slots = count + word(snapshot + 8);
        if (12 + 20 * slots > 8 * word(snapshot - 4) - 8)
            problem = "more slots than the block has";
        for (std::uint32_t entry = snapshot + 12; entry < snapshot + 12 + 20 * count; entry += 20) {
            const std::uint32_t record = target(entry + 16);
            if (isFree(record) || !blocks.insert(record).second || word(record) < 1)
                problem = "a record's block is free, listed twice or not counted";
            found[m_bytes.substr(entry, 16)] = m_bytes.substr(record + 4, 92 - 4 + word(record + 4));
        }
        return problem.empty() ? found : std::map<std::string, std::string>();
    }

private:
    [[nodiscard]] std::uint32_t word(std::uint32_t offset) const {
        std::uint32_t value = 0;
        std::memcpy(&value, m_bytes.data() + offset, sizeof value);
        return value;
    }
    [[nodiscard]] std::uint32_t target(std::uint32_t offset) const { return offset + word(offset); }
    [[nodiscard]] bool isTiled() const {
        std::uint32_t block = 56;
        while (block < word(12) && word(block + 4) != 0)
            block += 8 * word(block + 4);
        return block == word(12);
    }
    [[nodiscard]] bool isFree(std::uint32_t data) const {
        for (std::uint32_t block = target(0); block != 0; block = target(block))
            if (block <= data - 8 && data - 8 < block + 8 * word(block + 4))
                return true;
        return false;
    }

    std::string m_bytes;
};

/// A process that runs a function one instruction at a time.
class SteppedProcess {
public:
    explicit SteppedProcess(const std::function<void()>& main) : m_process(fork()) {
        if (m_process == 0) {
            if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0)
                raise(SIGSTOP);
            main();
            _exit(0);
        }
    }
    SteppedProcess(const SteppedProcess&) = delete;
    SteppedProcess& operator=(const SteppedProcess&) = delete;
    ~SteppedProcess() {
        if (isStopped()) {
            ::kill(m_process, SIGKILL);
            waitpid(m_process, &m_status, 0);
        }
    }

    /// Waits until the process stops or ends.  Whether it stopped.
    bool wait() { return waitpid(m_process, &m_status, 0) == m_process && isStopped(); }
    /// Runs one instruction.  False if the process stopped itself or ended.
    bool step() {
        return ptrace(PTRACE_SINGLESTEP, m_process, nullptr, nullptr) == 0 && wait() && WSTOPSIG(m_status) == SIGTRAP;
    }
    /// Runs the process until it stops itself.
    bool run() { return ptrace(PTRACE_CONT, m_process, nullptr, nullptr) == 0 && wait(); }
    [[nodiscard]] bool isStopped() const { return WIFSTOPPED(m_status); }

private:
    pid_t m_process;
    int m_status = 0;
};

using States = std::vector<std::map<std::string, std::string>>;

class QelCacheInterruptionTest : public CacheFileTest {
protected:
    static constexpr unsigned firstRecords = 20;

    /// A file with some records and room for more.
    void SetUp() override {
        CacheFileTest::SetUp();
        if (IsSkipped())
            return;
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(1000), TestValue(key(1000), 0, 1800)), 0);
        for (unsigned i = 0; i < firstRecords; ++i)
            ASSERT_EQ(cache->insert(key(10 * i), valueOf(10 * i)), 0);
        ASSERT_EQ(cache->remove(key(1000)), 0);
        // An array without a free slot.
        ASSERT_EQ(cache->insert(key(1), valueOf(1)), 0);
        m_expected.push_back(recordsNow());
    }

    static TestValue valueOf(unsigned number, unsigned version = 0) {
        return TestValue(key(number), version, number * 37 % 300);
    }

    /// Makes changes in another process, one instruction after the other, and reads the file whenever its bytes have
    /// changed.  The records of all states, each once in a row.
    States statesDuring(const std::function<void(TestCache&)>& change) {
        States states;
        QelMemoryMappedFile mapped;
        const tFileMappingOptions options(7, fileOpenOrCreate, accessReadWrite, mapSizeAsAsked);
        EXPECT_EQ(mapped.map(file.path(), static_cast<unsigned>(file.size()), options, nullptr), 0);
        SteppedProcess process([&] {
            const TestCachePtr cache = attach(file);
            raise(SIGSTOP);
            change(*cache);
            raise(SIGSTOP);
        });
        if (!process.wait() || !process.run()) {
            m_isTraceable = false;
            return states;
        }
        const auto* memory = static_cast<const char*>(mapped.getMemory());
        std::string seen;
        do {
            if (seen.size() == mapped.getSize() && std::memcmp(seen.data(), memory, seen.size()) == 0)
                continue;
            seen.assign(memory, mapped.getSize());
            std::string problem;
            auto records = CacheImage(seen).records(problem);
            EXPECT_EQ(problem, "");
            if (states.empty() || states.back() != records)
                states.push_back(std::move(records));
        } while (!HasFailure() && process.step());
        EXPECT_EQ(file.size(), mapped.getSize()) << "the test sees all of the file";
        return states;
    }

    /// Runs the changes, each of which adds `key` and `value` to the expected states, or replaces a record.
    void expectWholeSteps(const std::vector<std::pair<QelGUIDBase, TestValue>>& changed,
                          const std::function<int(TestCache&, const QelGUIDBase&, const TestValue&)>& change) {
        const States states = statesDuring([&](TestCache& cache) {
            for (const auto& [id, value] : changed)
                if (change(cache, id, value) != 0)
                    _exit(1);
        });
        if (!m_isTraceable)
            GTEST_SKIP() << "processes may not be traced here";
        for (const auto& [id, value] : changed) {
            m_expected.push_back(m_expected.back());
            m_expected.back()[bytesOfKey(id)] = bytesOf(value);
        }
        ASSERT_EQ(states.size(), m_expected.size()) << "one state for each change";
        EXPECT_EQ(states, m_expected);
    }

    static int insertInto(TestCache& cache, const QelGUIDBase& id, const TestValue& value) {
        return cache.insert(id, value);
    }
    static int updateIn(TestCache& cache, const QelGUIDBase& id, const TestValue& value) {
        return cache.update(id, value);
    }

private:
    static std::string bytesOfKey(const QelGUIDBase& id) { return {reinterpret_cast<const char*>(&id), sizeof id}; }
    /// A record without its count.
    static std::string bytesOf(const TestValue& value) {
        const void* buffer = nullptr;
        unsigned length = 0;
        static_cast<void>(value.getBuffer(&buffer, length, nullptr));
        return std::string(static_cast<const char*>(buffer), length).substr(4);
    }
    std::map<std::string, std::string> recordsNow() const {
        std::string problem;
        auto records = CacheImage(file.read()).records(problem);
        EXPECT_EQ(problem, "");
        return records;
    }

    States m_expected;
    bool m_isTraceable = true;
};

TEST_F(QelCacheInterruptionTest, InsertionsThatCopyTheArrayAddWholeRecordsAndLoseNone) {
    std::vector<std::pair<QelGUIDBase, TestValue>> added;
    for (unsigned i = 0; i < 8; ++i)
        added.emplace_back(key(23 * i + 3), valueOf(23 * i + 3));
    expectWholeSteps(added, insertInto);
}

TEST_F(QelCacheInterruptionTest, InsertionsBesideAReaderAddWholeRecordsAndLoseNone) {
    const TestCachePtr cache = attach(file);
    const TestListPtr list = cache->getList();
    expectWholeSteps({{key(3), valueOf(3)}, {key(26), valueOf(26)}}, insertInto);
}

TEST_F(QelCacheInterruptionTest, InsertionIntoTheLastFreeSlotNeverCountsMoreSlotsThanThereAre) {
    {
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(2000), valueOf(0)), 0);
        ASSERT_EQ(cache->remove(key(2000)), 0);
    }
    expectWholeSteps({{key(3000), valueOf(3000)}}, insertInto);
}

TEST_F(QelCacheInterruptionTest, UpdatesReplaceWholeRecords) {
    expectWholeSteps({{key(10), valueOf(10, 1)}, {key(50), valueOf(50, 1)}}, updateIn);
}

TEST_F(QelCacheInterruptionTest, UpdatesBesideAReaderReplaceWholeRecords) {
    const TestCachePtr cache = attach(file);
    const TestListPtr list = cache->getList();
    expectWholeSteps({{key(10), valueOf(10, 1)}, {key(50), valueOf(50, 1)}}, updateIn);
}

} // namespace
} // namespace Qel
