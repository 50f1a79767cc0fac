#pragma once

#include <cstdint>
#include <vector>

#include "qel/cachefile/CacheBytes.h"
#include "qel/cachefile/CacheFinding.h"

namespace Qel::Tool {

/// What a block is for, as far as it is known yet.
enum class BlockUse : std::uint8_t { unknown, free, snapshot, record };

/// One block of the heap.  Its length includes the head; the data follows the head.
struct CacheBlock {
    CacheFormat::Offset offset = 0;
    std::uint32_t length = 0;
    std::uint32_t listings = 0;          ///< snapshots that list the block as a record
    CacheFormat::Offset lastListing = 0; ///< block of the last snapshot that did
    BlockUse use = BlockUse::unknown;
    bool damaged = false; ///< its own length is wrong: `length` is the room up to what follows

    [[nodiscard]] CacheFormat::Offset data() const { return offset + CacheFormat::Block::head; }
    [[nodiscard]] std::uint32_t dataLength() const { return length - CacheFormat::Block::head; }
    [[nodiscard]] std::uint64_t end() const { return std::uint64_t{offset} + length; }
};

/// The blocks that tile a cache file, and its free list.
///
/// Where a block's length is damaged the tiling goes on at the next place that is known to be a block since the free
/// list, the header or an entry of the current snapshot refers to it, so that one damaged length shows as one finding.
class CacheHeap {
public:
    /// Looks at all of the file, whose header is there, and tells what is wrong.
    CacheHeap(const CacheBytes& bytes, Findings& findings);

    [[nodiscard]] std::vector<CacheBlock>& blocks() { return m_blocks; }

    /// The block whose data begin at `offset`; null if there is none.
    [[nodiscard]] CacheBlock* findByData(std::int64_t offset);

    /// Whether every block is known for sure, and whether it is free or in use.
    [[nodiscard]] bool isCertain() const { return m_tiled && m_freeListComplete && !m_cut; }

    /// Whether `offset` lies in the part of the heap that the file is too short for.
    [[nodiscard]] bool isCutOff(std::int64_t offset) const;
    /// Whether all of the block's bytes are in the file.
    [[nodiscard]] bool isThere(const CacheBlock& block) const { return block.end() <= m_bytes.size(); }

private:
    using Offset = CacheFormat::Offset;

    void findEnd(Findings& findings);
    bool tile(std::uint64_t end, const std::vector<Offset>& anchors, Findings* findings);
    [[nodiscard]] std::vector<Offset> findAnchors();
    void addSnapshotAnchors(std::vector<Offset>& anchors) const;
    [[nodiscard]] bool mayBeBlock(std::int64_t offset) const;
    std::vector<Offset> walkFreeList(bool knowBlocks, Findings& findings);
    void findUnmerged(Findings& findings) const;
    [[nodiscard]] CacheBlock* find(std::int64_t offset);

    CacheBytes m_bytes;
    std::uint64_t m_end = 0; ///< of the heap; beyond the end of a file that is too short
    bool m_cut = false;
    bool m_tiled = false;
    bool m_freeListComplete = false;
    std::vector<CacheBlock> m_blocks; ///< by offset
};

/// Whether the key at `a` comes before the one at `b`: the first half decides, then the second, as unsigned numbers.
[[nodiscard]] bool keyPrecedes(const CacheBytes& bytes, std::uint64_t a, std::uint64_t b);

} // namespace Qel::Tool
