#include "qel/cachefile/CacheHeap.h"

#include <algorithm>
#include <string>

namespace Qel::Tool {

using namespace CacheFormat;

namespace {

constexpr std::uint64_t roundedDown(std::uint64_t bytes) {
    return bytes - bytes % alignment;
}

std::string describeOverrun(std::uint64_t offset, std::uint64_t length, std::uint64_t stop, std::uint64_t end) {
    return "block of " + std::to_string(length) + " bytes overruns " +
           (stop == end ? "the end of the heap at " : "the block at ") + std::to_string(stop) + "; it has room for " +
           std::to_string(stop - offset);
}

} // namespace

bool keyPrecedes(const CacheBytes& bytes, std::uint64_t a, std::uint64_t b) {
    constexpr std::uint32_t half = keyLength / 2;
    const std::uint64_t firstA = bytes.doubleWord(a);
    const std::uint64_t firstB = bytes.doubleWord(b);
    return firstA != firstB ? firstA < firstB : bytes.doubleWord(a + half) < bytes.doubleWord(b + half);
}

CacheHeap::CacheHeap(const CacheBytes& bytes, Findings& findings) : m_bytes(bytes) {
    findEnd(findings);
    m_tiled = tile(m_end, {}, nullptr);
    const std::vector<Offset> anchors = m_tiled ? std::vector<Offset>() : findAnchors();
    tile(m_end, anchors, &findings);
    for (const Offset offset : walkFreeList(true, findings))
        find(offset)->use = BlockUse::free;
    findUnmerged(findings);
}

CacheBlock* CacheHeap::findByData(std::int64_t offset) {
    return find(offset - Block::head);
}

CacheBlock* CacheHeap::find(std::int64_t offset) {
    const auto found =
        std::lower_bound(m_blocks.begin(), m_blocks.end(), offset,
                         [](const CacheBlock& block, std::int64_t wanted) { return block.offset < wanted; });
    return found != m_blocks.end() && found->offset == offset ? &*found : nullptr;
}

bool CacheHeap::isCutOff(std::int64_t offset) const {
    return offset >= 0 && static_cast<std::uint64_t>(offset) + Block::head > m_bytes.size() &&
           static_cast<std::uint64_t>(offset) < m_end;
}

/// Determines the end of the heap.  If the blocks match the file's length but not the header's size, the size is wrong.
void CacheHeap::findEnd(Findings& findings) {
    const std::uint32_t size = m_bytes.word(Header::size);
    const auto report = [&](const std::string& text) {
        findings.push_back({Header::size, FindingKind::fileLength, "size is " + std::to_string(size) + text});
    };
    const std::uint64_t fileEnd = roundedDown(m_bytes.size());
    m_end = roundedDown(size);
    if (size % alignment != 0)
        report(", not a multiple of " + std::to_string(alignment));
    if (m_end > m_bytes.size()) {
        m_cut = true;
        report(", but the file has " + std::to_string(m_bytes.size()) + " bytes");
    } else if (m_end < Header::length) {
        m_end = fileEnd;
        report(", less than the header");
    } else if (m_end != fileEnd && !tile(m_end, {}, nullptr) && tile(fileEnd, {}, nullptr)) {
        m_end = fileEnd;
        report(", but the blocks extend to " + std::to_string(m_end));
    }
}

/// Rebuilds m_blocks from the header to `end`.  After a wrong length it resumes at the next of `anchors`, which are
/// ascending.  Returns true if all lengths were right.  `findings` may be null.
bool CacheHeap::tile(std::uint64_t end, const std::vector<Offset>& anchors, Findings* findings) {
    m_blocks.clear();
    bool sound = true;
    std::uint64_t offset = Header::length;
    auto anchor = anchors.begin();
    while (offset < end && m_bytes.holds(offset, Block::head)) {
        while (anchor != anchors.end() && *anchor <= offset)
            ++anchor;
        const std::uint64_t stop = anchor == anchors.end() ? end : *anchor;
        const std::uint64_t length = std::uint64_t{m_bytes.word(offset + Block::blocks)} * Block::unit;
        const bool damaged = length == 0 || length > stop - offset;
        const std::uint64_t next = damaged ? stop : offset + length;

        CacheBlock block;
        block.offset = static_cast<Offset>(offset);
        block.length = static_cast<std::uint32_t>(next - offset);
        block.damaged = damaged;
        m_blocks.push_back(block);
        if (findings && damaged)
            findings->push_back({offset, FindingKind::blockSize,
                                 length == 0 ? "block length is zero" : describeOverrun(offset, length, stop, end)});
        else if (findings && length < Block::leastLength)
            findings->push_back({offset, FindingKind::blockSize, "block has no data after its head"});
        sound = sound && !damaged;
        offset = next;
    }
    return sound;
}

/// Offsets of blocks that something refers to, in ascending order.
std::vector<Offset> CacheHeap::findAnchors() {
    Findings ignored;
    std::vector<Offset> anchors = walkFreeList(false, ignored);
    addSnapshotAnchors(anchors);
    std::sort(anchors.begin(), anchors.end());
    return anchors;
}

/// Adds the blocks of the current snapshot and of its records.  Entries are trusted up to the first one out of order.
void CacheHeap::addSnapshotAnchors(std::vector<Offset>& anchors) const {
    const auto addBlockOf = [&](std::optional<std::int64_t> data) {
        const bool usable = data && mayBeBlock(*data - Block::head);
        if (usable)
            anchors.push_back(static_cast<Offset>(*data - Block::head));
        return usable;
    };
    const auto snapshot = m_bytes.target(Header::snapshot);
    if (!addBlockOf(snapshot) || !m_bytes.holds(static_cast<std::uint64_t>(*snapshot), Snapshot::entries))
        return;
    const auto start = static_cast<std::uint64_t>(*snapshot);
    const std::uint32_t count = m_bytes.word(start + Snapshot::count);
    std::uint64_t entry = start + Snapshot::entries;
    for (std::uint32_t i = 0; i < count && m_bytes.holds(entry, Entry::length); ++i, entry += Entry::length) {
        if (i != 0 && !keyPrecedes(m_bytes, entry - Entry::length, entry))
            return;
        addBlockOf(m_bytes.target(entry + Entry::record));
    }
}

/// True if `offset` is aligned and has room for a block head.
bool CacheHeap::mayBeBlock(std::int64_t offset) const {
    return offset >= Header::length && offset % alignment == 0 &&
           static_cast<std::uint64_t>(offset) + Block::head <= std::min(m_end, m_bytes.size());
}

/// Follows the free list from the sentinel and reports wrong links.  With `knowBlocks` an entry must be one of
/// m_blocks; otherwise mayBeBlock() suffices.  Returns the blocks' offsets in list order, without duplicates.
std::vector<Offset> CacheHeap::walkFreeList(bool knowBlocks, Findings& findings) {
    constexpr Offset sentinel = 0;
    std::vector<Offset> entries;
    std::vector<bool> seen(static_cast<std::size_t>(m_bytes.size() / alignment));
    Offset current = sentinel;
    m_freeListComplete = false;
    const auto report = [&](FindingKind kind, const std::string& text) {
        findings.push_back({current, kind, "the free list " + text});
    };
    while (true) {
        const auto next = m_bytes.target(current + Block::next);
        if (next == sentinel) {
            m_freeListComplete = true;
            return entries;
        }
        if (next && isCutOff(*next))
            return entries;
        if (!next) {
            report(FindingKind::freeListLink, "ends with a null pointer instead of the header");
            return entries;
        }
        if (!mayBeBlock(*next) || (knowBlocks && !find(*next))) {
            report(FindingKind::freeListLink, "points to " + std::to_string(*next) + ", where no block starts");
            return entries;
        }
        if (seen[static_cast<std::size_t>(*next / alignment)]) {
            report(FindingKind::freeListLink, "contains a cycle through " + std::to_string(*next));
            return entries;
        }
        if (*next < current)
            report(FindingKind::freeListOrder,
                   "is out of order: " + std::to_string(*next) + " follows " + std::to_string(current));
        current = static_cast<Offset>(*next);
        seen[current / alignment] = true;
        entries.push_back(current);
    }
}

void CacheHeap::findUnmerged(Findings& findings) const {
    for (std::size_t i = 1; i < m_blocks.size(); ++i) {
        if (m_blocks[i - 1].use == BlockUse::free && m_blocks[i].use == BlockUse::free && !m_blocks[i - 1].damaged)
            findings.push_back(
                {m_blocks[i].offset, FindingKind::freeListUnmerged,
                 "free block was not merged with the free block at " + std::to_string(m_blocks[i - 1].offset)});
    }
}

} // namespace Qel::Tool
