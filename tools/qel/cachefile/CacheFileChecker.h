#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "qel/cachefile/CacheFinding.h"

namespace Qel::Tool {

/// What a file is, as its first bytes tell.
enum class CacheFileKind : std::uint8_t {
    cache,       ///< at least half of the header's signature fields are right
    unformatted, ///< shorter than a header and empty, or a header of zeros: no process has written into it yet
    foreign,     ///< anything else
};

[[nodiscard]] CacheFileKind identifyCacheFile(std::span<const std::byte> bytes);

/// A snapshot that isn't current any more and still counts readers.  Nothing in the file tells whether they live: the
/// snapshot of a process that died stays held for ever.
struct HeldSnapshot {
    std::uint64_t offset; ///< of its block
    std::int32_t readers;
    std::uint32_t records;
};

/// What a cache file holds, and what is wrong with it.  Where something is wrong, the numbers cover what could be told
/// apart.  All sizes are bytes, with the heads of the blocks.
struct CacheFileReport {
    Findings findings; ///< in the order of the file
    std::vector<HeldSnapshot> heldSnapshots;

    std::uint32_t blocks = 0;
    std::uint32_t freeBlocks = 0;
    std::uint64_t freeBytes = 0;
    std::uint64_t largestFreeBlock = 0;
    std::uint32_t records = 0;         ///< that the current snapshot lists
    std::int32_t snapshotRefCount = 0; ///< of the current snapshot
    std::uint64_t achievableSize = 0;  ///< of a file with nothing but the current snapshot and its records
};

/// Walks the whole file by its format alone.  Any bytes will do.
///
/// The consequences of a damage aren't told again: once the blocks or a reference to one can't be trusted, blocks that
/// nobody seems to refer to and counts that seem wrong are no findings.
[[nodiscard]] CacheFileReport checkCacheFile(std::span<const std::byte> bytes);

} // namespace Qel::Tool
