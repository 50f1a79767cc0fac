#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include "QelCore/TestCache.h"

namespace Qel {

/// The name of a file in a directory of its own, which goes with all that is in it.
class TempFile {
public:
    TempFile();
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile();

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] bool exists() const;
    [[nodiscard]] std::uint64_t size() const;

    void write(const std::string& bytes) const;
    [[nodiscard]] std::string read() const;
    [[nodiscard]] std::uint32_t word(unsigned offset) const;
    void setWord(unsigned offset, std::uint32_t value) const;

private:
    std::string m_directory;
    std::string m_path;
};

/// What is wrong with a cache file by its format alone, one line for each finding: header, blocks that tile the heap,
/// free list ordered and merged, counters, the current snapshot with its keys, records and counts.  With
/// `allReferenced` also blocks that neither the header nor the current snapshot refers to, and counts above 1: what
/// remains of readers.
[[nodiscard]] std::vector<std::string> findingsIn(const TempFile& file, bool allReferenced = true);

/// A channel between processes: one side waits until the other has signalled.
class Signal {
public:
    Signal();
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal();

    void give() const;
    void wait() const;

private:
    int m_ends[2];
};

/// A process that runs a function and exits with its result; killed if it still runs at the end.
class ChildProcess {
public:
    explicit ChildProcess(const std::function<int()>& main);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Exit code of the process, or -1 if it was ended by a signal.
    int wait();
    void kill();

private:
    pid_t m_process;
};

/// Exit code of a new process that runs `main`.
int inChild(const std::function<int()>& main);

inline constexpr unsigned testMaxItem = 0x1000000;
inline constexpr unsigned testMaxLists = 16;
inline constexpr unsigned testMaxStorage = 0x40000000;

[[nodiscard]] TestCachePtr makeCache(const TempFile& file, unsigned maxStorage = testMaxStorage,
                                     unsigned maxItem = testMaxItem);
/// A cache attached to the file; the test ends if that fails.
TestCachePtr attach(const TempFile& file, unsigned maxStorage = testMaxStorage, unsigned maxItem = testMaxItem);

/// The n-th key, in the order of the numbers.
[[nodiscard]] inline QelGUIDBase key(unsigned number) {
    return QelGUIDBase(static_cast<long long>(number), 1);
}

/// A random number below `limit`.
[[nodiscard]] inline unsigned below(std::mt19937& random, unsigned limit) {
    return static_cast<unsigned>(random() % limit);
}

/// The keys of a list in its order.
[[nodiscard]] inline std::vector<QelGUIDBase> keysOf(const TestListPtr& list) {
    std::vector<QelGUIDBase> keys;
    for (const auto& record : *list)
        keys.push_back(record.key);
    return keys;
}

/// A test of one cache file.  Numbers of bytes are those of a machine with pages of 4096 bytes.
class CacheFileTest : public testing::Test {
protected:
    static constexpr unsigned page = 4096;
    static constexpr unsigned validOffset = 52;

    void SetUp() override {
        if (QelMemoryMappedFile::getMemoryPageSize() != page)
            GTEST_SKIP() << "pages of another size";
    }

    /// Blocks and counters of the file agree, and nothing is left of readers.
    void expectClean() const { EXPECT_THAT(findingsIn(file), testing::IsEmpty()); }

    const TempFile file;
};

} // namespace Qel
