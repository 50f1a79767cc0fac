#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "qel/cachefile/CacheFinding.h"

namespace Qel::Tool {

/// The type of a file, according to its header.
enum class CacheFileKind : std::uint8_t {
    cache,       ///< at least half of the header's signature fields are right
    unformatted, ///< empty or all zeros up to the header's length: no process has written to it yet
    foreign,     ///< anything else
};

[[nodiscard]] CacheFileKind identifyCacheFile(std::span<const std::byte> bytes);

/// A former snapshot that still has readers.  The file does not record whether the readers are alive: a snapshot whose
/// reader died is never released.
struct HeldSnapshot {
    std::uint64_t offset; ///< of its block
    std::int32_t readers;
    std::uint32_t records;
};

/// Contents and defects of a cache file.  In a damaged file the numbers cover only the recognised blocks.  All sizes
/// are in bytes and include the block heads.
struct CacheFileReport {
    Findings findings; ///< sorted by offset
    std::vector<HeldSnapshot> heldSnapshots;

    std::uint32_t blocks = 0;
    std::uint32_t freeBlocks = 0;
    std::uint64_t freeBytes = 0;
    std::uint64_t largestFreeBlock = 0;
    std::uint32_t records = 0;         ///< listed by the current snapshot
    std::int32_t snapshotRefCount = 0; ///< of the current snapshot
    std::uint64_t achievableSize = 0;  ///< of a file that contains only the current snapshot and its records
};

/// Checks the whole file against the format.  Safe for arbitrary bytes.
///
/// Consequential errors are suppressed: if the blocks or a reference to a block cannot be trusted, unreferenced blocks
/// and wrong counts are not reported.
[[nodiscard]] CacheFileReport checkCacheFile(std::span<const std::byte> bytes);

} // namespace Qel::Tool
