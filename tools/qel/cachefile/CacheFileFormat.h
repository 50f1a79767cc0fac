#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// An independent definition of the cache file's format.
///
/// The constants are deliberately not taken from the library: a checker that shares the allocator's definitions would
/// share its bugs.  All integers are 32 bits wide and little-endian.  A pointer is the signed distance in bytes from
/// the pointer itself to its target.
namespace Qel::Tool::CacheFormat {

using Offset = std::uint32_t;

// Pointers.
inline constexpr std::int32_t nullPointer = 1;
inline constexpr std::uint32_t alignment = 8; ///< of every block and of every block's data

/// The file's header, at offset 0.  Its first two fields are the head of the free list's sentinel, a block that is
/// never merged with another.
namespace Header {
inline constexpr Offset next = 0;
inline constexpr Offset blocks = 4;
inline constexpr Offset ttlAllocated = 8; ///< bytes in use: this header and the used blocks, heads included
inline constexpr Offset size = 12;        ///< bytes: this header and all blocks
inline constexpr Offset headerSize = 16;
inline constexpr Offset snapshot = 20; ///< pointer to the data of the current snapshot's block
inline constexpr Offset lock = 24;     ///< unused
inline constexpr Offset magic = 28;
inline constexpr Offset headerBytes = 32;
inline constexpr Offset keyBytes = 36;
inline constexpr Offset revision = 40;
inline constexpr Offset valueBytes = 44;
inline constexpr Offset generation = 48;
inline constexpr Offset valid = 52; ///< 0 marks the file as unusable
inline constexpr std::uint32_t length = 56;
} // namespace Header

/// How the value of a header field is determined.
enum class FieldRole : std::uint8_t {
    variable,
    constant,  ///< has the same value in every valid file
    signature, ///< a constant that is unlikely to occur by chance, hence usable to identify the file type
};

struct HeaderField {
    Offset offset;
    std::string_view name;
    FieldRole role = FieldRole::variable;
    std::uint32_t value = 0; ///< of a constant or signature
    bool isPointer = false;
};

inline constexpr std::array<HeaderField, 14> headerFields{{
    {Header::next, "next", FieldRole::variable, 0, true},
    {Header::blocks, "blocks", FieldRole::constant, 1},
    {Header::ttlAllocated, "ttlAllocated"},
    {Header::size, "size"},
    {Header::headerSize, "headerSize", FieldRole::signature, Header::length},
    {Header::snapshot, "snapshot", FieldRole::variable, 0, true},
    {Header::lock, "lock"},
    {Header::magic, "magic", FieldRole::signature, 0xCACEFE03},
    {Header::headerBytes, "headerBytes", FieldRole::signature, Header::length},
    {Header::keyBytes, "keyBytes", FieldRole::signature, 16},
    {Header::revision, "revision", FieldRole::signature, 225},
    {Header::valueBytes, "valueBytes", FieldRole::signature, 92},
    {Header::generation, "generation", FieldRole::constant, 1},
    {Header::valid, "valid", FieldRole::constant, 1},
}};

/// The blocks tile the file from the end of the header to Header::size.
namespace Block {
inline constexpr Offset next = 0;   ///< pointer to the head of the next free block; undefined in a used block
inline constexpr Offset blocks = 4; ///< length in units, head included
inline constexpr std::uint32_t head = 8;
inline constexpr std::uint32_t unit = 8;
inline constexpr std::uint32_t leastLength = 16; ///< a head and at least one unit of data
/// The most bytes by which a block exceeds the request rounded up to units: the allocator does not split off a single
/// unit.
inline constexpr std::uint32_t mostSpareBytes = 8;
} // namespace Block

/// A snapshot: a reference count, then a sorted array of entries followed by free slots.
namespace Snapshot {
inline constexpr Offset refCount = 0; ///< one for each reader, plus one for the header if the snapshot is current
inline constexpr Offset count = 4;
inline constexpr Offset reserved = 8; ///< free slots after the entries
inline constexpr Offset entries = 12;
} // namespace Snapshot

namespace Entry {
inline constexpr Offset key = 0;
inline constexpr Offset record = 16; ///< pointer to the data of the record's block
inline constexpr std::uint32_t length = 20;
} // namespace Entry

inline constexpr std::uint32_t keyLength = 16;

/// A record: a fixed-length head, the two configurations, and four spare bytes.
namespace Record {
inline constexpr Offset refCount = 0; ///< number of snapshots that list it
inline constexpr Offset parentEid = 4;
inline constexpr Offset eid = 20;
inline constexpr Offset type = 44;
inline constexpr std::uint32_t typeLength = 16;
inline constexpr Offset configSize = 80;
inline constexpr Offset vconfigSize = 84;
inline constexpr Offset config = 88;
inline constexpr std::uint32_t declaredLength = 92;
} // namespace Record

/// Processes never grow a file beyond this length.
inline constexpr std::uint32_t greatestFileLength = 0x40000000;
/// A process holds at most 16 lists; Linux supports at most 2^22 processes (PID_MAX_LIMIT).
inline constexpr std::int32_t greatestRefCount = 16 * (1 << 22) + 1;

} // namespace Qel::Tool::CacheFormat
