#pragma once

#include <cstdint>

namespace Qel {

/// Result codes of cache operations.
enum QelCacheResult : int {
    cacheSuccess = 0,
    cacheNotMapped = -2,      ///< the file could not be mapped
    cacheItemTooLarge = -3,   ///< the record is larger than the cache accepts
    cacheKeyExists = -5,      ///< insert: the key already exists
    cacheKeyMissing = -6,     ///< update, remove: no such key
    cacheNotAttached = -7,    ///< not attached to a file
    cacheNoSnapshot = -8,     ///< no snapshot could be acquired at start
    cacheNotLocked = -9,      ///< the file's lock could not be acquired
    cacheOutOfSpace = -10,    ///< the file cannot grow, or a new mapping failed
    cacheBadHeaderSize = -11, ///< unexpected header size
    cacheBadMagic = -12,      ///< not a cache file
    cacheBadKeySize = -13,    ///< unexpected key size
    cacheInvalid = -14,       ///< marked as unusable
    cacheBadRevision = -15,   ///< unexpected format revision
    cacheBadValueSize = -16,  ///< unexpected declared record size
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
