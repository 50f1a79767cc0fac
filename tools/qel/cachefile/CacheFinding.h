#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Qel::Tool {

/// What can be wrong with a cache file.
enum class FindingKind : std::uint8_t {
    headerConstant,   ///< a header field that is the same in every file isn't
    fileLength,       ///< the header's size doesn't go with the file
    blockSize,        ///< a block is empty, or runs into another one or over the end
    freeListLink,     ///< the free list leads to where no block is, or in a circle
    freeListOrder,    ///< the free list goes back
    freeListUnmerged, ///< two free blocks follow each other
    counter,          ///< the header's count of bytes in use is wrong
    unformatted,      ///< that count is 0, as in a file that was never formatted
    snapshotPointer,  ///< the header's snapshot isn't a block in use
    snapshotSize,     ///< the snapshot's entries and free slots don't go with its block
    snapshotRefCount, ///< the snapshot's reference count can't be right
    keyOrder,         ///< a snapshot's keys don't ascend
    recordPointer,    ///< an entry's record isn't a block in use of its own
    recordKey,        ///< a record's own key isn't that of its entry
    recordLength,     ///< a record's length doesn't go with its block
    recordType,       ///< a record's type isn't a text
    recordRefCount,   ///< a record's reference count isn't the number of snapshots that list it
    unreferenced,     ///< a block in use that nobody refers to
};

/// The kind as JSON output names it.
[[nodiscard]] std::string_view nameOf(FindingKind kind);

/// One thing that is wrong.
struct Finding {
    std::uint64_t offset; ///< of the field or block, in bytes from the file's start
    FindingKind kind;
    std::string text;
    bool isExcess = false; ///< of a count: it is higher than what it counts, so that nothing is freed too early
};

/// How bad a finding is.
enum class FindingClass : std::uint8_t {
    harmlessLeak, ///< bytes are in use that nothing refers to
    wrongCount,   ///< a count differs from what it counts; what is listed is right
    damage,       ///< what is listed, or the heap, can't be trusted
};

[[nodiscard]] FindingClass classOf(const Finding& finding);

/// The class as text output names it, and as JSON output does.
[[nodiscard]] std::string_view titleOf(FindingClass findingClass);
[[nodiscard]] std::string_view nameOf(FindingClass findingClass);

/// What to do about a finding.
[[nodiscard]] std::string_view adviceOn(const Finding& finding);

/// Whether environments may be listed wrongly: now, or once a record is freed that a count is too low for.
[[nodiscard]] bool makesListingWrong(const Finding& finding);

using Findings = std::vector<Finding>;

} // namespace Qel::Tool
