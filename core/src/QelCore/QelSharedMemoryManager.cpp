#include "QelCore/QelSharedMemoryManager.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelCore/QelSharedMemoryManager";

bool isAligned(const void* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer) % QelSharedMemoryManager::unitSize == 0;
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

/// Best fit, cut short by the first block of which at most a quarter would be left over.
QelSharedMemoryManager::FreeBlock QelSharedMemoryManager::findFreeBlock(unsigned need) {
    FreeBlock best{nullptr, nullptr};
    block_ctrl* previous = end();
    for (block_ctrl* block = previous->next.get(); block != end(); previous = block, block = block->next.get()) {
        // Rising addresses keep the walk in a damaged file from going round for ever.
        QEL_CHECK(isInRange(block) && block->blocks != 0 && previous < block, sourcePath);
        if (block->blocks < need)
            continue;
        if (std::uint64_t{block->blocks - need} * 4 <= block->blocks)
            return {previous, block};
        if (!best.block || best.block->blocks > block->blocks)
            best = {previous, block};
    }
    return best;
}

void* QelSharedMemoryManager::allocateData(std::size_t bytes) {
    if (bytes == 0)
        return nullptr;
    const std::int64_t largest =
        std::int64_t{m_header.size} - std::int64_t{m_header.ttlAllocated} - std::int64_t{block_ctrl::headSize};
    if (largest < 0 || static_cast<std::uint64_t>(largest) < bytes)
        return nullptr;
    const unsigned need = getBlocks(static_cast<unsigned>(bytes)) + block_ctrl::headSize / unitSize;
    const FreeBlock best = findFreeBlock(need);
    block_ctrl* block = best.block;
    if (!block)
        return nullptr;

    if (block->blocks > need + 1) {
        // The tail is handed out, so that the free block keeps its place in the list.
        block->blocks -= need;
        block = block->adjacent();
        QEL_CHECK(isInRange(block), sourcePath);
        block->blocks = need;
    } else {
        // One unit more than asked for stays in the block: a block of one unit would have no room for data.
        best.previous->next = block->next;
    }
    m_header.ttlAllocated += static_cast<std::uint32_t>(block->getSize());
    void* data = block->getData();
    QEL_CHECK(isAligned(data), sourcePath);
    return data;
}

void QelSharedMemoryManager::deallocateData(void* data) {
    block_ctrl* block = block_ctrl::parse(data);
    QEL_CHECK(isInRange(data) && isInRange(block) && isAligned(data), sourcePath);
    QEL_CHECK(m_header.ttlAllocated >= block->getSize(), sourcePath);
    m_header.ttlAllocated -= static_cast<std::uint32_t>(block->getSize());
    link(block);
}

/// Puts a block into the free list at its place by address, and merges it with the neighbours that touch it.
void QelSharedMemoryManager::link(block_ctrl* block) {
    block_ctrl* current = end();
    for (block_ctrl* next = current->next.get(); next > current && next <= block; next = current->next.get())
        current = next;
    block_ctrl* next = current->next.get();
    // A block that overlaps its free neighbours was given back before, or never handed out.
    QEL_CHECK(current->adjacent() <= block && (next <= block || block->adjacent() <= next), sourcePath);

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
}

} // namespace Qel
