#pragma once

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCore/TestCache.h"
#include "support/ChildProcess.h"
#include "support/TempFile.h"

namespace Qel {

using TestSupport::ChildProcess;
using TestSupport::inChild;
using TestSupport::Signal;
using TestSupport::TempFile;

/// What is wrong with a cache file by its format alone, one line for each finding: header, blocks that tile the heap,
/// free list ordered and merged, counters, the current snapshot with its keys, records and counts.  With
/// `allReferenced` also blocks that neither the header nor the current snapshot refers to, and counts above 1: what
/// remains of readers.
[[nodiscard]] std::vector<std::string> findingsIn(const TempFile& file, bool allReferenced = true);

/// Pages between two offsets of a mapping that the kernel has in memory.
[[nodiscard]] long pagesInMemory(const QelMemoryMappedFile& file, unsigned from, unsigned to);

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
