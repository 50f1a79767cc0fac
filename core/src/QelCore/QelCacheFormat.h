#pragma once

#include <cstdint>

namespace Qel {

/// Result codes of cache operations.
enum QelCacheResult : int {
    cacheSuccess = 0,
    cacheNotMapped = -2,      ///< the file could not be mapped
    cacheItemTooLarge = -3,   ///< the record is larger than the cache accepts
    cacheKeyExists = -5,      ///< insert: the key exists already
    cacheKeyMissing = -6,     ///< update, remove: the key doesn't exist
    cacheNotAttached = -7,    ///< not attached to a file
    cacheNoSnapshot = -8,     ///< no snapshot could be acquired at start
    cacheNotLocked = -9,      ///< the file's lock could not be acquired
    cacheOutOfSpace = -10,    ///< the file cannot grow, or a new mapping failed
    cacheBadHeaderSize = -11, ///< the file's header has another size
    cacheBadMagic = -12,      ///< the file isn't a cache
    cacheBadKeySize = -13,    ///< the file's keys have another size
    cacheInvalid = -14,       ///< the file was marked as unusable
    cacheBadRevision = -15,   ///< the file has another revision of the format
    cacheBadValueSize = -16,  ///< the file's records have another declared size
};

/// Constants of the file header.
namespace CacheFormat {

inline constexpr std::uint32_t headerBytes = 56;
inline constexpr std::uint32_t magic = 0xCACEFE03;
inline constexpr std::uint32_t revision = 225;
inline constexpr std::uint32_t firstGeneration = 1;

/// Offset of the flag that marks a file as usable (1) or not (0).
inline constexpr unsigned validOffset = 52;

} // namespace CacheFormat

} // namespace Qel
