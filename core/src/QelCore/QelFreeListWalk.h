#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "QelCore/QelSharedMemoryManager.h"

namespace Qel {

/// Traverses the free list of a heap in address order, on a thread that holds the file lock.
///
/// Free blocks are usually in different pages, and the address of each is stored in the one before: a plain traversal
/// stalls on a cache miss, often a TLB miss too, at every step.  This class predicts each block from the list that the
/// thread traversed last, possibly in another heap, and compares the prediction with the block header in the file.  The
/// loads are independent, so the processor overlaps them.  A prediction is never trusted without the comparison, since
/// other processes may have changed the list.
///
/// A link that leads outside the heap or not to a higher address is damage and ends the traversal.  A thread has at
/// most one traversal at a time.
class QelFreeListWalk {
    /// A block of the list and its header as last read.
    struct Step {
        std::uint32_t offset = 0; ///< from the sentinel, which also terminates the list
        std::uint32_t next = 0;   ///< offset of the next block
        std::uint32_t blocks = 0; ///< size in units, never 0 in a block; 0 if the header is not known

        [[nodiscard]] bool operator==(const Step&) const = default;
    };

public:
    /// A position in the list.
    class Place {
        friend class QelFreeListWalk;
        const Step* m_step = nullptr;
    };

    using block_ctrl = QelSharedMemoryManager::block_ctrl;

    /// Starts at the first free block of the heap with this header.
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
    /// Whether damage has been found.
    [[nodiscard]] bool isBroken() const noexcept { return m_path.isBroken; }

    /// The current block; the sentinel at the end.
    [[nodiscard]] block_ctrl* block() const noexcept { return m_heap.block(m_step->offset); }
    /// Size of the current block in units.
    [[nodiscard]] std::uint32_t blocks() const noexcept { return m_step->blocks; }
    /// The preceding block in the list, or the sentinel.
    [[nodiscard]] block_ctrl* previous() const noexcept { return m_heap.block(m_previous); }

    /// Requires !atEnd().
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

    /// Updates the remembered list after the caller changed the free list immediately before, at or after `place`.  The
    /// traversal must not be continued.
    void changedAt(Place place) noexcept { m_path.refresh(place.m_step, m_heap); }

private:
    struct Heap {
        std::uintptr_t base;
        std::uintptr_t last; ///< highest offset at which a block may start

        [[nodiscard]] block_ctrl* block(std::uint32_t offset) const noexcept {
            return reinterpret_cast<block_ctrl*>(base + offset);
        }
        [[nodiscard]] Step read(std::uint32_t offset) const noexcept {
            const block_ctrl* head = block(offset);
            std::uint32_t distance;
            std::memcpy(&distance, static_cast<const void*>(&head->next), sizeof distance);
            return {offset, offset + distance, head->blocks};
        }
        /// Whether the block header is valid in itself.  Strictly ascending offsets rule out cycles.
        [[nodiscard]] bool isPlausible(const Step& step) const noexcept {
            const bool rises = step.next > step.offset && step.next <= last;
            return step.blocks != 0 && (step.next == 0 || (rises && step.next % QelSharedMemoryManager::unitSize == 0));
        }
        [[nodiscard]] bool confirms(const Step& step) const noexcept {
            return step.offset <= last && read(step.offset) == step;
        }
    };

    /// The free list as the thread last read it, starting with the sentinel, up to `capacity` steps.
    ///
    /// Separate from the traversal, with Heap passed by value: no pointer to the traversal escapes, so the compiler
    /// keeps it in registers.
    class Path {
    public:
        static Path& ofThisThread() noexcept;

        [[nodiscard]] const Step* start() noexcept {
            isBroken = false;
            return m_steps.data();
        }
        /// Reads the step at the position of `step` from the file, for a `step` whose prediction failed or is missing.
        /// Sets isBroken if the file is damaged.
        const Step* correct(const Step* step, Heap heap) noexcept;

        /// Re-reads the steps around `step`.
        void refresh(const Step* step, Heap heap) noexcept;

        bool isBroken = false;

    private:
        static constexpr std::ptrdiff_t capacity = 1024;
        /// Offset of a step that is not remembered.  No heap is that large.
        static constexpr std::uint32_t unknown = ~std::uint32_t{0};

        [[nodiscard]] Step* begin() noexcept { return m_steps.data(); }
        [[nodiscard]] Step* end() noexcept { return begin() + m_count; }

        void learn(Step* step, const Step& seen) noexcept;
        void cut(Step* place, std::uint32_t offset) noexcept;
        void insert(Step* place, std::uint32_t offset) noexcept;
        [[nodiscard]] const Step* setDetour(const Step& step, std::uint32_t nextOffset) noexcept;

        /// The sentinel and the blocks after it; the element at `m_count` is the end of the list or an unknown step.
        std::array<Step, capacity + 1> m_steps{};
        std::ptrdiff_t m_count = 1;
        /// A step that is not in m_steps, and its successor.
        std::array<Step, 2> m_detour{};
    };

    Heap m_heap;
    Path& m_path;
    const Step* m_step;
    std::uint32_t m_previous = 0;
};

} // namespace Qel
