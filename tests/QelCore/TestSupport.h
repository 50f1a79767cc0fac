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

/// Checks a cache file by its format alone and returns one line per finding.  Checks the header, tiling of blocks,
/// order and merging of the free list, counters, and the current snapshot with its keys, records and counts.  With
/// `allReferenced` also reports leftovers of readers: blocks that neither the header nor the current snapshot
/// references, and counts above 1.
[[nodiscard]] std::vector<std::string> findingsIn(const TempFile& file, bool allReferenced = true);

/// Number of pages between two offsets of a mapping that are in the page cache.
[[nodiscard]] long pagesInMemory(const QelMemoryMappedFile& file, unsigned from, unsigned to);

inline constexpr unsigned testMaxItem = 0x1000000;
inline constexpr unsigned testMaxLists = 16;
inline constexpr unsigned testMaxStorage = 0x40000000;

[[nodiscard]] TestCachePtr makeCache(const TempFile& file, unsigned maxStorage = testMaxStorage,
                                     unsigned maxItem = testMaxItem);
/// A cache attached to the file; aborts the test on failure.
TestCachePtr attach(const TempFile& file, unsigned maxStorage = testMaxStorage, unsigned maxItem = testMaxItem);

/// A key; keys are ordered by number.
[[nodiscard]] inline QelGUIDBase key(unsigned number) {
    return QelGUIDBase(static_cast<long long>(number), 1);
}

/// A random number below `limit`.
[[nodiscard]] inline unsigned below(std::mt19937& random, unsigned limit) {
    return static_cast<unsigned>(random() % limit);
}

/// The keys of a list, in order.
[[nodiscard]] inline std::vector<QelGUIDBase> keysOf(const TestListPtr& list) {
    std::vector<QelGUIDBase> keys;
    for (const auto& record : *list)
        keys.push_back(record.key);
    return keys;
}

/// A test of one cache file.  Sizes assume pages of 4096 bytes.
class CacheFileTest : public testing::Test {
protected:
    static constexpr unsigned page = 4096;
    static constexpr unsigned validOffset = 52;

    void SetUp() override {
        if (QelMemoryMappedFile::getMemoryPageSize() != page)
            GTEST_SKIP() << "page size is not 4096";
    }

    /// Expects a valid file without leftovers of readers.
    void expectClean() const { EXPECT_THAT(findingsIn(file), testing::IsEmpty()); }

    const TempFile file;
};

} // namespace Qel
