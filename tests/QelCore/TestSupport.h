#pragma once

#include <random>
#include <string>
#include <vector>

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

} // namespace Qel
