#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Qel::Tool {

/// The defects that the checker detects.
enum class FindingKind : std::uint8_t {
    headerConstant,   ///< a constant header field has a wrong value
    fileLength,       ///< the header's size does not match the file
    blockSize,        ///< a block is empty or overlaps the next block or the end of the heap
    freeListLink,     ///< the free list points to something other than a block, or contains a cycle
    freeListOrder,    ///< the free list is not in ascending order
    freeListUnmerged, ///< two adjacent free blocks were not merged
    counter,          ///< the header's count of bytes in use is wrong
    unformatted,      ///< that count is 0, as in a file that was never formatted
    snapshotPointer,  ///< the header's snapshot pointer does not refer to a used block
    snapshotSize,     ///< the snapshot's entries and free slots do not match its block's length
    snapshotRefCount, ///< the snapshot's reference count is out of range
    keyOrder,         ///< a snapshot's keys are not in ascending order
    recordPointer,    ///< an entry does not refer to a used block of its own
    recordKey,        ///< a record's key differs from that of its entry
    recordLength,     ///< a record's length does not match its block's length
    recordType,       ///< a record's type is not a null-terminated string padded with zeros
    recordRefCount,   ///< a record's reference count differs from the number of snapshots that list it
    unreferenced,     ///< a used block without any reference to it
};

/// The kind's name in JSON output.
[[nodiscard]] std::string_view nameOf(FindingKind kind);

/// One detected defect.
struct Finding {
    std::uint64_t offset; ///< of the field or block, in bytes from the start of the file
    FindingKind kind;
    std::string text;
    bool isExcess = false; ///< of a count: it is too high, so nothing is freed too early
};

/// Severity of a finding, in ascending order.
enum class FindingClass : std::uint8_t {
    harmlessLeak, ///< bytes in use without any reference to them
    wrongCount,   ///< a count is wrong; the listed records are intact
    damage,       ///< the listing or the heap cannot be trusted
};

[[nodiscard]] FindingClass classOf(const Finding& finding);

/// The class's name in text output.
[[nodiscard]] std::string_view titleOf(FindingClass findingClass);
/// The class's name in JSON output.
[[nodiscard]] std::string_view nameOf(FindingClass findingClass);

/// The recommended action.
[[nodiscard]] std::string_view adviceOn(const Finding& finding);

/// True if environments may be listed wrongly, either now or after a record whose count is too low has been freed.
[[nodiscard]] bool affectsListing(const Finding& finding);

using Findings = std::vector<Finding>;

} // namespace Qel::Tool
