#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "QelCore/QelSharedMemoryManager.h"

namespace Qel {

/// A walk over the free blocks of a heap, in their order, by the thread that holds the file's lock.
///
/// Free blocks lie in a page each, and where one lies is known only when the one before has been read: a plain walk
/// waits for memory at every step.  This one takes each block from the list as the thread saw it last, in whatever heap
/// that was, and compares its head with the one in the file.  The processor so reads many at once, and nothing is
/// believed that the file doesn't confirm: other processes may have changed the list meanwhile.
///
/// A step that leads out of the heap, or not upwards, is damage.  The walk ends there.  A thread has one walk at a
/// time.
class QelFreeListWalk {
    /// A block of the list, and its head as it was read.
    struct Step {
        std::uint32_t offset = 0; ///< from the sentinel, which is the step behind the last block, too
        std::uint32_t next = 0;   ///< offset of the next block
        std::uint32_t blocks = 0; ///< size in units; 0, which no block has, if the head isn't known

        [[nodiscard]] bool operator==(const Step&) const = default;
    };

public:
    /// Where a walk stood.
    class Place {
        friend class QelFreeListWalk;
        const Step* m_step = nullptr;
    };

    using block_ctrl = QelSharedMemoryManager::block_ctrl;

    /// Stands at the first free block of the heap with that header.
    explicit QelFreeListWalk(const QelSharedMemoryManager::header_t& header) noexcept
        : m_heap{reinterpret_cast<std::uintptr_t>(&header),
                 std::max<std::uintptr_t>(header.size, block_ctrl::headSize) - block_ctrl::headSize},
          m_path(Path::ofThisThread()), m_step(m_path.start()) {
        if (!m_heap.confirms(*m_step))
            m_step = m_path.correct(m_step, m_heap);
        advance();
        if (!atEnd() && m_step->offset < header.headerSize)
            m_path.isBroken = true;
    }
    QelFreeListWalk(const QelFreeListWalk&) = delete;
    QelFreeListWalk& operator=(const QelFreeListWalk&) = delete;

    [[nodiscard]] bool atEnd() const noexcept { return m_step->offset == 0; }
    /// Whether damage was met so far.
    [[nodiscard]] bool isBroken() const noexcept { return m_path.isBroken; }

    /// The block where the walk stands; the sentinel at the end.
    [[nodiscard]] block_ctrl* block() const noexcept { return m_heap.block(m_step->offset); }
    /// Its size in units.
    [[nodiscard]] std::uint32_t blocks() const noexcept { return m_step->blocks; }
    /// The block before it in the list, or the sentinel.
    [[nodiscard]] block_ctrl* previous() const noexcept { return m_heap.block(m_previous); }

    /// Not at the end.
    void advance() noexcept {
        m_previous = m_step->offset;
        ++m_step;
        if (!atEnd() && !m_heap.confirms(*m_step)) [[unlikely]]
            m_step = m_path.correct(m_step, m_heap);
    }

    [[nodiscard]] Place place() const noexcept {
        Place here;
        here.m_step = m_step;
        return here;
    }

    /// Tells that the caller changed the list right before, at, or right behind `place`, and that the walk is over.
    void changedAt(Place place) noexcept { m_path.renew(place.m_step, m_heap); }

private:
    struct Heap {
        std::uintptr_t base;
        std::uintptr_t last; ///< offset where a block may begin at the latest

        [[nodiscard]] block_ctrl* block(std::uint32_t offset) const noexcept {
            return reinterpret_cast<block_ctrl*>(base + offset);
        }
        [[nodiscard]] Step read(std::uint32_t offset) const noexcept {
            const block_ctrl* head = block(offset);
            std::uint32_t distance;
            std::memcpy(&distance, static_cast<const void*>(&head->next), sizeof distance);
            return {offset, offset + distance, head->blocks};
        }
        /// Whether a block can be what its head tells.  Rising offsets keep a walk from going round for ever.
        [[nodiscard]] bool leadsOn(const Step& step) const noexcept {
            const bool rises = step.next > step.offset && step.next <= last;
            return step.blocks != 0 && (step.next == 0 || (rises && step.next % QelSharedMemoryManager::unitSize == 0));
        }
        [[nodiscard]] bool confirms(const Step& step) const noexcept {
            return step.offset <= last && read(step.offset) == step;
        }
    };

    /// A free list as a thread saw it last, from the sentinel on, as far as there is room.
    ///
    /// It is apart from the walk, and takes a Heap by value, so that no pointer to the walk exists: the compiler keeps
    /// that in registers.
    class Path {
    public:
        static Path& ofThisThread() noexcept;

        [[nodiscard]] const Step* start() noexcept {
            isBroken = false;
            return m_steps.data();
        }
        /// `step`, where a walk in `heap` stands, as it is in the file.  It isn't known, or differs.
        const Step* correct(const Step* step, Heap heap) noexcept;

        /// Reads anew what stands around `step`.
        void renew(const Step* step, Heap heap) noexcept;

        bool isBroken = false;

    private:
        static constexpr std::ptrdiff_t capacity = 1024;
        /// An offset that isn't remembered.  No heap is that large.
        static constexpr std::uint32_t unknown = ~std::uint32_t{0};

        [[nodiscard]] Step* begin() noexcept { return m_steps.data(); }
        [[nodiscard]] Step* end() noexcept { return begin() + m_count; }

        void learn(Step* step, const Step& seen) noexcept;
        void cut(Step* place, std::uint32_t offset) noexcept;
        void insert(Step* place, std::uint32_t offset) noexcept;
        [[nodiscard]] const Step* standAside(const Step& step, std::uint32_t nextOffset) noexcept;

        /// The sentinel and the blocks behind it; at `m_count` the end of the list, or a step that isn't known.
        std::array<Step, capacity + 1> m_steps{};
        std::ptrdiff_t m_count = 1;
        /// A step that isn't one of the list above, and what follows it.
        std::array<Step, 2> m_aside{};
    };

    Heap m_heap;
    Path& m_path;
    const Step* m_step;
    std::uint32_t m_previous = 0;
};

} // namespace Qel
