#include "QelCore/QelSharedMemoryManager.h"

#include <algorithm>
#include <array>

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelCore/QelSharedMemoryManager";

bool isAligned(const void* pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer) % QelSharedMemoryManager::unitSize == 0;
}

/// Where the free blocks lay at the last walk of a list, in their order: offsets from the sentinel, which ends the list
/// as offset 0.
class RememberedPath {
public:
    /// Kept out of line: the compiler holds the address of such a variable for cheap and would ask for it at every
    /// step.
    [[gnu::noinline]] static RememberedPath& ofThisThread() noexcept {
        thread_local RememberedPath path;
        return path;
    }

    /// Whether the block at `step` is remembered at `offset`.
    [[nodiscard]] bool confirms(std::size_t step, std::uint32_t offset) const noexcept {
        return step < m_count && differs(m_offsets[step], offset) == 0;
    }
    [[nodiscard]] std::uint32_t at(std::size_t step) const noexcept { return m_offsets[step]; }

    /// Learns that the block at `step` lies at `offset`.  Most often that is a block that came between two known ones,
    /// or one behind some that went, so what follows is kept.
    [[gnu::noinline]] void correct(std::size_t step, std::uint32_t offset) noexcept {
        constexpr std::size_t mostGone = 8;
        if (step >= capacity)
            return;
        const auto here = m_offsets.begin() + static_cast<std::ptrdiff_t>(step);
        const auto end = m_offsets.begin() + static_cast<std::ptrdiff_t>(m_count);
        const auto limit = m_offsets.begin() + static_cast<std::ptrdiff_t>(std::min(m_count, step + mostGone));
        const auto known = here < limit ? std::find(here, limit, offset) : limit;
        if (known < limit) {
            std::copy(known, end, here);
            m_count -= static_cast<std::size_t>(known - here);
            return;
        }
        if (m_count < capacity)
            ++m_count;
        std::copy_backward(here, m_offsets.begin() + static_cast<std::ptrdiff_t>(m_count) - 1,
                           m_offsets.begin() + static_cast<std::ptrdiff_t>(m_count));
        *here = offset;
    }

private:
    static constexpr std::size_t capacity = 1024;

    /// Zero if the two are equal, by a way that the compiler can't see through.  If it could, it would take the one for
    /// the other, and the walk would wait for the one that comes from memory.
    static std::uint32_t differs(std::uint32_t a, std::uint32_t b) noexcept {
        std::uint32_t difference = a ^ b;
        asm("" : "+r"(difference));
        return difference;
    }

    std::array<std::uint32_t, capacity> m_offsets{};
    std::size_t m_count = 0;
};

/// Walks the free list from the sentinel on.
///
/// A block lies in a page of its own, and is known only when the one before has been read: a plain walk waits for
/// memory at every step.  This one takes the next block from the path that it remembers, while the processor still
/// compares that with the list, and so reads many blocks at once.  The path is never believed: it doesn't matter that
/// other processes change the list meanwhile, or that the path is one of another file.
class FreeListWalk {
public:
    using block_ctrl = QelSharedMemoryManager::block_ctrl;

    explicit FreeListWalk(block_ctrl* sentinel) noexcept
        : m_base(reinterpret_cast<std::uintptr_t>(sentinel)), m_previous(sentinel), m_block(follow(sentinel)) {}

    [[nodiscard]] block_ctrl* previous() const noexcept { return m_previous; }
    [[nodiscard]] block_ctrl* block() const noexcept { return m_block; }

    void advance() noexcept {
        m_previous = m_block;
        m_block = follow(m_block);
    }

private:
    block_ctrl* follow(const block_ctrl* block) noexcept {
        block_ctrl* next = block->next.get();
        const auto offset = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(next) - m_base);
        const std::size_t step = m_step++;
        if (m_path.confirms(step, offset)) [[likely]]
            return reinterpret_cast<block_ctrl*>(m_base + m_path.at(step));
        m_path.correct(step, offset);
        return next;
    }

    RememberedPath& m_path = RememberedPath::ofThisThread();
    std::uintptr_t m_base;
    std::size_t m_step = 0;
    block_ctrl* m_previous;
    block_ctrl* m_block;
};

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
    const block_ctrl* sentinel = end();
    const std::uintptr_t lower = lowerBound();
    const std::uintptr_t upper = upperBound();
    for (FreeListWalk walk(end()); walk.block() != sentinel; walk.advance()) {
        block_ctrl* block = walk.block();
        const auto address = reinterpret_cast<std::uintptr_t>(block);
        // Rising addresses keep the walk in a damaged file from going round for ever.
        QEL_CHECK(lower <= address && address < upper && block->blocks != 0 && walk.previous() < block, sourcePath);
        if (block->blocks < need)
            continue;
        if (std::uint64_t{block->blocks - need} * 4 <= block->blocks)
            return {walk.previous(), block};
        if (!best.block || best.block->blocks > block->blocks)
            best = {walk.previous(), block};
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

bool QelSharedMemoryManager::extendData(void* data, std::size_t bytes) {
    block_ctrl* block = block_ctrl::parse(data);
    QEL_CHECK(isInRange(data) && isInRange(block) && isAligned(data), sourcePath);
    const unsigned need = getBlocks(static_cast<unsigned>(bytes)) + block_ctrl::headSize / unitSize;
    if (block->blocks >= need)
        return true;
    FreeListWalk walk(end());
    while (walk.block() > walk.previous() && walk.block() < block)
        walk.advance();
    block_ctrl* neighbour = walk.block();
    if (neighbour != block->adjacent())
        return false;
    const unsigned missing = need - block->blocks;
    if (neighbour->blocks < missing)
        return false;

    unsigned taken = neighbour->blocks;
    if (taken > missing + 1) {
        auto* rest = reinterpret_cast<block_ctrl*>(reinterpret_cast<std::uintptr_t>(neighbour) +
                                                   std::uintptr_t{missing} * unitSize);
        rest->blocks = taken - missing;
        rest->next = neighbour->next;
        walk.previous()->next = rest;
        taken = missing;
    } else {
        // One unit that is left stays in the block, as when it is handed out.
        walk.previous()->next = neighbour->next;
    }
    block->blocks += taken;
    m_header.ttlAllocated += taken * unitSize;
    return true;
}

/// Puts a block into the free list at its place by address, and merges it with the neighbours that touch it.
void QelSharedMemoryManager::link(block_ctrl* block) {
    FreeListWalk walk(end());
    while (walk.block() > walk.previous() && walk.block() <= block)
        walk.advance();
    block_ctrl* current = walk.previous();
    block_ctrl* next = walk.block();
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
