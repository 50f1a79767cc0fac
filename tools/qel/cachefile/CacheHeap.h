#pragma once

#include <cstdint>
#include <vector>

#include "qel/cachefile/CacheBytes.h"
#include "qel/cachefile/CacheFinding.h"

namespace Qel::Tool {

/// What a block is used for, as far as the check has determined it.
enum class BlockUse : std::uint8_t { unknown, free, snapshot, record };

/// One block of the heap.  The length includes the head; the data follow the head.
struct CacheBlock {
    CacheFormat::Offset offset = 0;
    std::uint32_t length = 0;
    std::uint32_t listings = 0;          ///< number of snapshots that list the block as a record
    CacheFormat::Offset lastListing = 0; ///< block of the last such snapshot
    BlockUse use = BlockUse::unknown;
    bool damaged = false; ///< the stored length is wrong; `length` extends to the next known block

    [[nodiscard]] CacheFormat::Offset data() const { return offset + CacheFormat::Block::head; }
    [[nodiscard]] std::uint32_t dataLength() const { return length - CacheFormat::Block::head; }
    [[nodiscard]] std::uint64_t end() const { return std::uint64_t{offset} + length; }
};

/// The blocks that tile a cache file, and its free list.
///
/// After a damaged block length, tiling resumes at the next anchor: a block that the free list, the header or an entry
/// of the current snapshot refers to.  A single damaged length therefore yields a single finding.
class CacheHeap {
public:
    /// Tiles the whole file and appends the defects to `findings`.  The file must contain a complete header.
    CacheHeap(const CacheBytes& bytes, Findings& findings);

    [[nodiscard]] std::vector<CacheBlock>& blocks() { return m_blocks; }

    /// The block whose data start at `offset`; null if there is none.
    [[nodiscard]] CacheBlock* findByData(std::int64_t offset);

    /// True if all blocks were found and each is known to be free or in use.
    [[nodiscard]] bool isCertain() const { return m_tiled && m_freeListComplete && !m_cut; }

    /// True if `offset` lies in the part of the heap beyond the end of a truncated file.
    [[nodiscard]] bool isCutOff(std::int64_t offset) const;
    /// True if the file contains all bytes of the block.
    [[nodiscard]] bool isComplete(const CacheBlock& block) const { return block.end() <= m_bytes.size(); }

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
    std::uint64_t m_end = 0; ///< of the heap; beyond the end of a truncated file
    bool m_cut = false;
    bool m_tiled = false;
    bool m_freeListComplete = false;
    std::vector<CacheBlock> m_blocks; ///< sorted by offset
};

/// True if the key at `a` is less than the key at `b`.  The halves are compared as unsigned integers, first half first.
[[nodiscard]] bool keyPrecedes(const CacheBytes& bytes, std::uint64_t a, std::uint64_t b);

} // namespace Qel::Tool
