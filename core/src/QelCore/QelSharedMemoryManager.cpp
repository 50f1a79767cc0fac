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

/// Bytes of the largest allocation that may succeed when `free` bytes are free; negative if none may.
std::int64_t mostData(std::int64_t free) {
    return free - std::int64_t{block_ctrl::headSize};
}

/// Units of a block for `bytes` of data.
unsigned unitsFor(std::size_t bytes) {
    return QelSharedMemoryManager::getBlocks(static_cast<unsigned>(bytes)) +
           block_ctrl::headSize / QelSharedMemoryManager::unitSize;
}

/// Best fit, cut short by the first block of which at most a quarter would be left over.
class BestFit {
public:
    explicit BestFit(unsigned need) : m_need(need) {}

    /// Whether a block of `units` is the best so far; the earlier one of two equal blocks is.
    bool improvesWith(std::uint32_t units) {
        if (units < m_need)
            return false;
        m_final = std::uint64_t{units - m_need} * 4 <= units;
        if (!m_final && m_best <= units)
            return false;
        m_best = units;
        return true;
    }
    /// Whether no block that follows is looked at.
    [[nodiscard]] bool isFinal() const { return m_final; }

private:
    unsigned m_need;
    std::uint32_t m_best = ~std::uint32_t{0};
    bool m_final = false;
};

/// Has the processor fetch free memory that is likely to be written next.  Nothing in an update takes as long as
/// waiting for the lines of the block that the record is written to.  When they are asked for as the block is freed,
/// they come while the lock is given back and taken again.
void fetchForWriting(const void* data, std::size_t bytes) {
    constexpr std::size_t lineSize = 64;
    constexpr std::size_t most = 2048; // more at once would wait for each other
    const char* first = static_cast<const char*>(data);
    for (std::size_t line = 0; line < std::min(bytes, most); line += lineSize)
        __builtin_prefetch(first + line, 1, 2);
}

} // namespace

struct QelSharedMemoryManager::FreeBlock {
    block_ctrl* previous = nullptr;
    block_ctrl* block = nullptr; ///< null: there is none
    QelFreeListWalk::Place place;
    unsigned mostSpare = 1; ///< units that are handed out too, rather than left free
    bool overlaps = false;  ///< there is one, but it shares memory with a block that is still in use

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
    // The new block counts as used for an instant, and then is freed like any other, so that it merges with a free
    // block at the old end.
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

/// The same in the list that `doomed` is part of, merged with its free neighbours.
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
            // The tail of a merged block that is split may lie in the free block after `doomed`.  What is left of that
            // merges with `doomed`, so that it needs no room for data.
            best.overlaps = !isFollowed || walk.blocks() < need;
            if (!best.overlaps) {
                best = FreeBlock::at(walk);
                best.mostSpare = 0;
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
    const std::int64_t most = mostData(std::int64_t{m_header.size} - std::int64_t{m_header.ttlAllocated});
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
    const std::int64_t most = mostData(std::int64_t{m_header.size} - std::int64_t{m_header.ttlAllocated} +
                                       static_cast<std::int64_t>(freed->getSize()));
    if (most < 0 || static_cast<std::uint64_t>(most) < bytes)
        return {};
    const unsigned need = unitsFor(bytes);
    QelFreeListWalk walk(m_header);
    const FreeBlock best = findFreeBlockAhead(walk, need, freed);
    return {best.block ? take(walk, best, need) : nullptr, best.overlaps};
}

/// Whether all of a block lies in the heap, and before `next`, the free block that follows it or the sentinel.
bool QelSharedMemoryManager::liesWithin(block_ctrl* block, const block_ctrl* next) {
    const std::uintptr_t limit = next == end() ? upperBound() : reinterpret_cast<std::uintptr_t>(next);
    return isInRange(block) && block->blocks != 0 &&
           block->getSize() <= std::uint64_t{limit - reinterpret_cast<std::uintptr_t>(block)};
}

/// Takes `need` units from the tail of a free block, or all of it if one unit would be left: that has no room for data.
void* QelSharedMemoryManager::take(QelFreeListWalk& walk, const FreeBlock& from, unsigned need) {
    block_ctrl* block = from.block;
    QEL_CHECK(liesWithin(block, block->next.get()), sourcePath); // and so does its tail
    if (block->blocks > need + from.mostSpare) {
        // The tail is handed out, so that the free block keeps its place in the list.  Until that is shrunk it covers
        // the tail, whose head is written first.
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
    // A block that overlaps its free neighbours was deallocated before, or never allocated.
    QEL_CHECK(!walk.isBroken() && walk.previous()->adjacent() <= block && liesWithin(block, walk.block()), sourcePath);
    const auto size = static_cast<std::uint32_t>(block->getSize());
    m_header.ttlAllocated -= size;
    link(walk, block);
    fetchForWriting(data, size); // it fits whoever replaces what lay there
}

/// Puts a block into the free list where the walk is, and merges it with the neighbours that touch it.
void QelSharedMemoryManager::link(QelFreeListWalk& walk, block_ctrl* block) {
    block_ctrl* current = walk.previous();
    block_ctrl* next = walk.block();
    const auto swallow = [](block_ctrl* lower, block_ctrl* upper) {
        lower->next = upper->next;
        lower->blocks += upper->blocks;
    };
    // The sentinel merges with nothing: its one unit ends inside the header.
    if (block == current->adjacent()) {
        current->blocks += block->blocks;
        block = current;
    } else {
        block->next = next;
        keepStoreOrder();
        current->next = block;
    }
    if (next == block->adjacent())
        swallow(block, next);
    walk.changedAt(walk.place());
}

} // namespace Qel
