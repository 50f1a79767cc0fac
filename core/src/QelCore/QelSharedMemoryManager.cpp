#include "QelCore/QelSharedMemoryManager.h"

#include <algorithm>

#include "QelCore/QelFreeListWalk.h"
#include "QelCore/QelStoreOrder.h"

namespace Qel {

namespace {

using block_ctrl = QelSharedMemoryManager::block_ctrl;

constexpr const char* sourcePath = "core/src/QelCore/QelSharedMemoryManager";

bool isAligned(const void* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer) % QelSharedMemoryManager::unitSize == 0;
}

/// Upper bound for the size of an allocation when `free` bytes are free; negative if none can succeed.
std::int64_t maxDataBytes(std::int64_t free) {
    return free - std::int64_t{block_ctrl::headSize};
}

/// Size in units of a block with `bytes` of data.
unsigned unitsFor(std::size_t bytes) {
    return QelSharedMemoryManager::getBlocks(static_cast<unsigned>(bytes)) +
           block_ctrl::headSize / QelSharedMemoryManager::unitSize;
}

/// Best fit that stops early at the first block that would leave at most a quarter of its size unused.
class BestFit {
public:
    explicit BestFit(unsigned need) : m_need(need) {}

    /// Returns whether a block of `units` is the best so far; of two equal blocks the earlier one wins.
    bool improvesWith(std::uint32_t units) {
        if (units < m_need)
            return false;
        m_final = std::uint64_t{units - m_need} * 4 <= units;
        if (!m_final && m_best <= units)
            return false;
        m_best = units;
        return true;
    }
    /// Whether the search can stop.
    [[nodiscard]] bool isFinal() const { return m_final; }

private:
    unsigned m_need;
    std::uint32_t m_best = ~std::uint32_t{0};
    bool m_final = false;
};

/// Prefetches free memory that is likely to be written next.  The dominant cost of an update is the cache misses on the
/// block of the new record.  Prefetching when the block is freed overlaps them with the release and acquisition of the
/// lock.
void fetchForWriting(const void* data, std::size_t bytes) {
    constexpr std::size_t lineSize = 64;
    constexpr std::size_t maxBytes = 2048; // more prefetches would queue up
    const char* first = static_cast<const char*>(data);
    for (std::size_t line = 0; line < std::min(bytes, maxBytes); line += lineSize)
        __builtin_prefetch(first + line, 1, 2);
}

} // namespace

struct QelSharedMemoryManager::FreeBlock {
    block_ctrl* previous = nullptr;
    block_ctrl* block = nullptr; ///< null if none fits
    QelFreeListWalk::Place place;
    unsigned maxSpare = 1; ///< a remainder of up to this many units is not split off
    bool overlaps = false; ///< a block fits, but overlaps one that is still in use

    static FreeBlock at(const QelFreeListWalk& walk) { return {walk.previous(), walk.block(), walk.place()}; }
};

QelSharedMemoryManager::QelSharedMemoryManager(unsigned total, unsigned headerBytes) {
    m_header.headerSize = getBlocks(headerBytes) * unitSize;
    m_header.sentinel.blocks = 1;
    m_header.sentinel.next = end();
    m_header.size = m_header.ttlAllocated = m_header.headerSize;
    grow(total - m_header.headerSize);
}

void QelSharedMemoryManager::grow(unsigned bytes) {
    auto* block = reinterpret_cast<block_ctrl*>(upperBound());
    block->blocks = bytes / unitSize;
    // Count the new block as used, then free it like any other, so that it merges with a free block at the old end.
    m_header.size += bytes;
    m_header.ttlAllocated += bytes;
    deallocateData(block->getData());
}

void QelSharedMemoryManager::resize(std::size_t newSize) {
    if (newSize <= m_header.size)
        return;
    const auto added = static_cast<unsigned>(newSize - m_header.size);
    QEL_CHECK(added % unitSize == 0, sourcePath);
    grow(added);
}

auto QelSharedMemoryManager::findFreeBlock(QelFreeListWalk& walk, unsigned need) -> FreeBlock {
    BestFit fit(need);
    FreeBlock best;
    for (; !walk.atEnd(); walk.advance()) {
        if (fit.improvesWith(walk.blocks()))
            best = FreeBlock::at(walk);
        if (fit.isFinal())
            break;
    }
    QEL_CHECK(!walk.isBroken(), sourcePath);
    return best;
}

/// Finds the block that findFreeBlock() would find if `doomed` had been freed and merged with its free neighbours.
auto QelSharedMemoryManager::findFreeBlockAhead(QelFreeListWalk& walk, unsigned need, const block_ctrl* doomed)
    -> FreeBlock {
    BestFit fit(need);
    FreeBlock best;
    const auto address = reinterpret_cast<std::uintptr_t>(doomed);
    const std::uintptr_t end = address + static_cast<std::uintptr_t>(doomed->getSize());
    std::uint32_t merged = doomed->blocks;
    for (; !walk.atEnd() && walk.block() < doomed && !fit.isFinal(); walk.advance()) {
        if (reinterpret_cast<std::uintptr_t>(walk.block()->adjacent()) == address)
            merged += walk.blocks();
        else if (fit.improvesWith(walk.blocks()))
            best = FreeBlock::at(walk);
    }
    if (!fit.isFinal()) {
        const bool isFollowed = !walk.atEnd() && reinterpret_cast<std::uintptr_t>(walk.block()) == end;
        merged += isFollowed ? walk.blocks() : 0;
        if (fit.improvesWith(merged)) {
            best = {};
            // If the merged block is split, its tail may be entirely in the free block after `doomed`.  The remainder
            // of that merges with `doomed`, so it may be too small for data.
            best.overlaps = !isFollowed || walk.blocks() < need;
            if (!best.overlaps) {
                best = FreeBlock::at(walk);
                best.maxSpare = 0;
            }
        }
        if (isFollowed)
            walk.advance();
    }
    for (; !walk.atEnd() && !fit.isFinal(); walk.advance())
        if (fit.improvesWith(walk.blocks()))
            best = FreeBlock::at(walk);
    QEL_CHECK(!walk.isBroken(), sourcePath);
    return best;
}

void* QelSharedMemoryManager::allocateData(std::size_t bytes) {
    if (bytes == 0)
        return nullptr;
    const std::int64_t most = maxDataBytes(std::int64_t{m_header.size} - std::int64_t{m_header.ttlAllocated});
    if (most < 0 || static_cast<std::uint64_t>(most) < bytes)
        return nullptr;
    const unsigned need = unitsFor(bytes);
    QelFreeListWalk walk(m_header);
    const FreeBlock best = findFreeBlock(walk, need);
    return best.block ? take(walk, best, need) : nullptr;
}

auto QelSharedMemoryManager::allocateDataAhead(std::size_t bytes, void* doomed) -> Ahead<void> {
    const block_ctrl* freed = block_ctrl::parse(doomed);
    if (bytes == 0)
        return {};
    const std::int64_t most = maxDataBytes(std::int64_t{m_header.size} - std::int64_t{m_header.ttlAllocated} +
                                           static_cast<std::int64_t>(freed->getSize()));
    if (most < 0 || static_cast<std::uint64_t>(most) < bytes)
        return {};
    const unsigned need = unitsFor(bytes);
    QelFreeListWalk walk(m_header);
    const FreeBlock best = findFreeBlockAhead(walk, need, freed);
    return {best.block ? take(walk, best, need) : nullptr, best.overlaps};
}

/// Whether a block is entirely within the heap and before `next`, which is the next free block or the sentinel.
bool QelSharedMemoryManager::liesWithin(block_ctrl* block, const block_ctrl* next) {
    const std::uintptr_t limit = next == end() ? upperBound() : reinterpret_cast<std::uintptr_t>(next);
    return isInRange(block) && block->blocks != 0 &&
           block->getSize() <= std::uint64_t{limit - reinterpret_cast<std::uintptr_t>(block)};
}

/// Allocates `need` units from the tail of a free block, or the whole block if at most `from.maxSpare` units would
/// remain: a block of one unit has no room for data.
void* QelSharedMemoryManager::take(QelFreeListWalk& walk, const FreeBlock& from, unsigned need) {
    block_ctrl* block = from.block;
    QEL_CHECK(liesWithin(block, block->next.get()), sourcePath); // hence its tail, too
    if (block->blocks > need + from.maxSpare) {
        // Allocate the tail, so that the free block keeps its position in the list.  Write the header of the tail
        // first: until the free block is shrunk, it covers the tail.
        auto* tail = reinterpret_cast<block_ctrl*>(reinterpret_cast<std::uintptr_t>(block) +
                                                   std::uintptr_t{block->blocks - need} * unitSize);
        tail->blocks = need;
        keepStoreOrder();
        block->blocks -= need;
        block = tail;
    } else {
        from.previous->next = block->next;
    }
    walk.changedAt(from.place);
    m_header.ttlAllocated += static_cast<std::uint32_t>(block->getSize());
    void* data = block->getData();
    QEL_CHECK(isAligned(data), sourcePath);
    return data;
}

void QelSharedMemoryManager::deallocateData(void* data) {
    block_ctrl* block = block_ctrl::parse(data);
    QEL_CHECK(isInRange(data) && isInRange(block) && isAligned(data), sourcePath);
    QEL_CHECK(m_header.ttlAllocated >= block->getSize(), sourcePath);
    QelFreeListWalk walk(m_header);
    while (!walk.atEnd() && walk.block() <= block)
        walk.advance();
    // A block that overlaps its free neighbours is a double free or was never allocated.
    QEL_CHECK(!walk.isBroken() && walk.previous()->adjacent() <= block && liesWithin(block, walk.block()), sourcePath);
    const auto size = static_cast<std::uint32_t>(block->getSize());
    m_header.ttlAllocated -= size;
    link(walk, block);
    fetchForWriting(data, size); // the next allocation is most often for a record of the same size
}

/// Inserts a block into the free list at the current position and merges it with adjacent free neighbours.
void QelSharedMemoryManager::link(QelFreeListWalk& walk, block_ctrl* block) {
    block_ctrl* current = walk.previous();
    block_ctrl* next = walk.block();
    const auto absorb = [](block_ctrl* lower, block_ctrl* upper) {
        lower->next = upper->next;
        lower->blocks += upper->blocks;
    };
    // The sentinel never merges: its one unit ends inside the header.
    if (block == current->adjacent()) {
        current->blocks += block->blocks;
        block = current;
    } else {
        block->next = next;
        keepStoreOrder();
        current->next = block;
    }
    if (next == block->adjacent())
        absorb(block, next);
    walk.changedAt(walk.place());
}

} // namespace Qel
