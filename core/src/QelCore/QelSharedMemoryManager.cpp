#include "QelCore/QelSharedMemoryManager.h"

#include <algorithm>

#include "QelCore/QelFreeListWalk.h"

namespace Qel {

namespace {

using block_ctrl = QelSharedMemoryManager::block_ctrl;

constexpr const char* sourcePath = "core/src/QelCore/QelSharedMemoryManager";

bool isAligned(const void* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer) % QelSharedMemoryManager::unitSize == 0;
}

struct FreeBlock {
    block_ctrl* previous = nullptr;
    block_ctrl* block = nullptr;
    QelFreeListWalk::Place place;
};

/// Best fit, cut short by the first block of which at most a quarter would be left over.
FreeBlock findFreeBlock(QelFreeListWalk& walk, unsigned need) {
    FreeBlock best;
    std::uint32_t bestSize = ~std::uint32_t{0};
    for (; !walk.atEnd(); walk.advance()) {
        const std::uint32_t size = walk.blocks();
        if (size < need)
            continue;
        const bool fits = std::uint64_t{size - need} * 4 <= size;
        if (fits || !best.block || size < bestSize) {
            best = {walk.previous(), walk.block(), walk.place()};
            bestSize = size;
        }
        if (fits)
            break;
    }
    QEL_CHECK(!walk.isBroken(), sourcePath);
    return best;
}

/// Takes `units` from the front of a free block, or all of it if the rest would have no room for data.  Gives back how
/// many were taken.
unsigned takeFront(block_ctrl* previous, block_ctrl* block, unsigned units) {
    if (block->blocks <= units + 1) {
        previous->next = block->next;
        return block->blocks;
    }
    auto* rest = reinterpret_cast<block_ctrl*>(reinterpret_cast<std::uintptr_t>(block) +
                                               std::uintptr_t{units} * QelSharedMemoryManager::unitSize);
    rest->blocks = block->blocks - units;
    rest->next = block->next;
    previous->next = rest;
    return units;
}

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

void* QelSharedMemoryManager::allocateData(std::size_t bytes, Side side) {
    if (bytes == 0)
        return nullptr;
    const std::int64_t largest =
        std::int64_t{m_header.size} - std::int64_t{m_header.ttlAllocated} - std::int64_t{block_ctrl::headSize};
    if (largest < 0 || static_cast<std::uint64_t>(largest) < bytes)
        return nullptr;
    const unsigned need = getBlocks(static_cast<unsigned>(bytes)) + block_ctrl::headSize / unitSize;
    QelFreeListWalk walk(m_header);
    const FreeBlock best = findFreeBlock(walk, need);
    block_ctrl* block = best.block;
    if (!block)
        return nullptr;

    if (side == Side::front) {
        block->blocks = takeFront(best.previous, block, need);
    } else if (block->blocks > need + 1) {
        // The tail is handed out, so that the free block keeps its place in the list.
        block->blocks -= need;
        block = block->adjacent();
        QEL_CHECK(isInRange(block), sourcePath);
        block->blocks = need;
    } else {
        // One unit more than asked for stays in the block: a block of one unit would have no room for data.
        best.previous->next = block->next;
    }
    walk.changedAt(best.place);
    m_header.ttlAllocated += static_cast<std::uint32_t>(block->getSize());
    void* data = block->getData();
    QEL_CHECK(isAligned(data), sourcePath);
    return data;
}

void QelSharedMemoryManager::deallocateData(void* data) {
    block_ctrl* block = block_ctrl::parse(data);
    QEL_CHECK(isInRange(data) && isInRange(block) && isAligned(data), sourcePath);
    QEL_CHECK(m_header.ttlAllocated >= block->getSize(), sourcePath);
    const auto size = static_cast<std::uint32_t>(block->getSize());
    m_header.ttlAllocated -= size;
    link(block);
    fetchForWriting(data, size); // it fits whoever replaces what lay there
}

bool QelSharedMemoryManager::extendData(void* data, std::size_t bytes) {
    block_ctrl* block = block_ctrl::parse(data);
    QEL_CHECK(isInRange(data) && isInRange(block) && isAligned(data), sourcePath);
    const unsigned need = getBlocks(static_cast<unsigned>(bytes)) + block_ctrl::headSize / unitSize;
    if (block->blocks >= need)
        return true;
    QelFreeListWalk walk(m_header);
    while (!walk.atEnd() && walk.block() < block)
        walk.advance();
    block_ctrl* neighbour = walk.block();
    if (neighbour != block->adjacent())
        return false;
    const unsigned missing = need - block->blocks;
    if (neighbour->blocks < missing)
        return false;

    const unsigned taken = takeFront(walk.previous(), neighbour, missing);
    walk.changedAt(walk.place());
    block->blocks += taken;
    m_header.ttlAllocated += taken * unitSize;
    return true;
}

/// Puts a block into the free list at its place by address, and merges it with the neighbours that touch it.
void QelSharedMemoryManager::link(block_ctrl* block) {
    QelFreeListWalk walk(m_header);
    while (!walk.atEnd() && walk.block() <= block)
        walk.advance();
    block_ctrl* current = walk.previous();
    block_ctrl* next = walk.block();
    // A block that overlaps its free neighbours was given back before, or never handed out.
    QEL_CHECK(!walk.isBroken() && current->adjacent() <= block && (next <= block || block->adjacent() <= next),
              sourcePath);

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
        current->next = block;
    }
    if (next == block->adjacent())
        swallow(block, next);
    walk.changedAt(walk.place());
}

} // namespace Qel
