// Changes interrupted between any two instructions, as by SIGKILL, and the state of the file afterwards.

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

/// A copy of the bytes of a cache file that another process is writing.
class CacheImage {
public:
    explicit CacheImage(std::string bytes) : m_bytes(std::move(bytes)) {}

    /// Returns the bytes of each record by its key.  Returns an empty map and sets `problem` if a record is not in a
    /// used block of its own.
    std::map<std::string, std::string> records(std::string& problem) const {
        std::map<std::string, std::string> found;
        std::set<std::uint32_t> blocks;
        if (!isTiled()) {
            problem = "blocks do not tile the heap";
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
            problem = "the slots exceed the block";
        for (std::uint32_t entry = snapshot + 12; entry < snapshot + 12 + 20 * count; entry += 20) {
            const std::uint32_t record = target(entry + 16);
            if (isFree(record) || !blocks.insert(record).second || word(record) < 1)
                problem = "the block of a record is free, listed twice or has no reference";
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

/// A process that executes a function one instruction at a time (PTRACE_SINGLESTEP).
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

    /// Waits until the process stops or exits.  Returns whether it stopped.
    bool wait() { return waitpid(m_process, &m_status, 0) == m_process && isStopped(); }
    /// Executes one instruction.  Returns false if the process stopped itself or exited.
    bool step() {
        return ptrace(PTRACE_SINGLESTEP, m_process, nullptr, nullptr) == 0 && wait() && WSTOPSIG(m_status) == SIGTRAP;
    }
    /// Continues the process until it stops itself.
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

    /// Creates a file with some records and free space.
    void SetUp() override {
        CacheFileTest::SetUp();
        if (IsSkipped())
            return;
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(1000), TestValue(key(1000), 0, 1800)), 0);
        for (unsigned i = 0; i < firstRecords; ++i)
            ASSERT_EQ(cache->insert(key(10 * i), valueOf(10 * i)), 0);
        ASSERT_EQ(cache->remove(key(1000)), 0);
        // Fills the free slot of the array.
        ASSERT_EQ(cache->insert(key(1), valueOf(1)), 0);
        m_expected.push_back(recordsNow());
    }

    static TestValue valueOf(unsigned number, unsigned version = 0) {
        return TestValue(key(number), version, number * 37 % 300);
    }

    /// Makes changes in another process one instruction at a time and reads the file whenever its bytes change.
    /// Returns the records of all states, without consecutive duplicates.
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
        EXPECT_EQ(file.size(), mapped.getSize()) << "the test maps the whole file";
        return states;
    }

    /// Applies `change` to each pair of key and value.  Expects one state per change, which adds or replaces exactly
    /// that record.
    void expectAtomicChanges(const std::vector<std::pair<QelGUIDBase, TestValue>>& changed,
                             const std::function<int(TestCache&, const QelGUIDBase&, const TestValue&)>& change) {
        const States states = statesDuring([&](TestCache& cache) {
            for (const auto& [id, value] : changed)
                if (change(cache, id, value) != 0)
                    _exit(1);
        });
        if (!m_isTraceable)
            GTEST_SKIP() << "ptrace is not permitted";
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
    /// The bytes of a record without its reference count.
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

TEST_F(QelCacheInterruptionTest, InsertionsThatCopyTheArrayAreAtomic) {
    std::vector<std::pair<QelGUIDBase, TestValue>> added;
    for (unsigned i = 0; i < 8; ++i)
        added.emplace_back(key(23 * i + 3), valueOf(23 * i + 3));
    expectAtomicChanges(added, insertInto);
}

TEST_F(QelCacheInterruptionTest, InsertionsWithReaderAreAtomic) {
    const TestCachePtr cache = attach(file);
    const TestListPtr list = cache->getList();
    expectAtomicChanges({{key(3), valueOf(3)}, {key(26), valueOf(26)}}, insertInto);
}

TEST_F(QelCacheInterruptionTest, InsertionIntoTheLastFreeSlotNeverCountsTooManySlots) {
    {
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(2000), valueOf(0)), 0);
        ASSERT_EQ(cache->remove(key(2000)), 0);
    }
    expectAtomicChanges({{key(3000), valueOf(3000)}}, insertInto);
}

TEST_F(QelCacheInterruptionTest, UpdatesAreAtomic) {
    expectAtomicChanges({{key(10), valueOf(10, 1)}, {key(50), valueOf(50, 1)}}, updateIn);
}

TEST_F(QelCacheInterruptionTest, UpdatesWithReaderAreAtomic) {
    const TestCachePtr cache = attach(file);
    const TestListPtr list = cache->getList();
    expectAtomicChanges({{key(10), valueOf(10, 1)}, {key(50), valueOf(50, 1)}}, updateIn);
}

} // namespace
} // namespace Qel
