#pragma once

#include <cstddef>
#include <cstdint>

#include "QelCommon/Export.h"
#include "QelCore/QelSharedPointer.h"

namespace Qel {

class QelFreeListWalk;

/// A heap in a mapped file, starting at its first byte.
///
/// The object is the heap header in the file.  It is never constructed elsewhere; attaching to an existing heap means
/// using the address of the mapping as the address of the object.  After the header, blocks tile the file without gaps.
/// Each is either used or in the free list, which is sorted by address and contains no two adjacent blocks.
///
/// All integers are 32 bits wide in host byte order; sizes are in bytes unless stated otherwise.  The caller holds the
/// file lock during every operation.  The heap only grows.  A broken invariant means a damaged file or a programming
/// error and terminates the process.
class QEL_EXPORT QelSharedMemoryManager {
public:
    /// Allocation unit in bytes: size granularity and alignment of blocks.
    static constexpr unsigned unitSize = 8;

    /// The header of every block.
    class block_ctrl {
    public:
        static constexpr unsigned headSize = 8;

        /// Start of the user data, 8-aligned.
        [[nodiscard]] void* getData() noexcept { return bytes() + headSize; }
        /// The block whose data starts at `data`.
        [[nodiscard]] static block_ctrl* parse(void* data) noexcept {
            return reinterpret_cast<block_ctrl*>(static_cast<char*>(data) - headSize);
        }
        /// Size including this header. 64 bits wide, because a damaged header may specify more than 32 bits can hold.
        [[nodiscard]] std::uint64_t getSize() const noexcept { return std::uint64_t{blocks} * unitSize; }
        /// The block that follows in memory.
        [[nodiscard]] block_ctrl* adjacent() noexcept {
            return reinterpret_cast<block_ctrl*>(reinterpret_cast<std::uintptr_t>(this) +
                                                 static_cast<std::uintptr_t>(getSize()));
        }

        pointer_type<block_ctrl> next; ///< offset 0: the next free block; unused in a used block
        std::uint32_t blocks = 0;      ///< offset 4: size in units including the header; never 0

    private:
        [[nodiscard]] char* bytes() noexcept { return reinterpret_cast<char*>(this); }
    };

    /// The first bytes of the file.  All fields change under the file lock only.
    struct header_t {
        block_ctrl sentinel;            ///< offset 0: head of the free list; `blocks` is 1, so that it never merges
        std::uint32_t ttlAllocated = 0; ///< offset 8: allocated bytes including all headers; 0 if not formatted
        std::uint32_t size = 0; ///< offset 12: size of the heap from offset 0; other processes map this many bytes
        std::uint32_t headerSize = 0; ///< offset 16: size of the header, a multiple of 8
    };

    /// Pointer type for containers in this heap.
    struct traits_type {
        template <class T> using pointer = pointer_type<T>;
    };

    /// Formats a heap in the first `total` bytes of the mapping.  `headerBytes` of them are the file header that
    /// contains this object.  Both are multiples of 8.
    QelSharedMemoryManager(unsigned total, unsigned headerBytes);
    QelSharedMemoryManager(const QelSharedMemoryManager&) = delete;
    QelSharedMemoryManager& operator=(const QelSharedMemoryManager&) = delete;

    /// Allocates `bytes` of 8-aligned, uninitialised memory.  Returns null for 0 bytes or if no free block is large
    /// enough.
    template <class T> [[nodiscard]] T* allocate(std::size_t bytes) { return static_cast<T*>(allocateData(bytes)); }

    /// Result of `allocateAhead`.
    template <class T> struct Ahead {
        T* data;       ///< null if nothing was allocated
        bool overlaps; ///< nothing was allocated because the block would overlap `doomed`
    };

    /// Allocates the block that `allocate` would return after `deallocate(doomed)`, while `doomed` is still in use.
    /// The caller must deallocate `doomed` next; until then a free block of one unit, which has no room for data, may
    /// exist.
    template <class T, class U> [[nodiscard]] Ahead<T> allocateAhead(std::size_t bytes, U* doomed) {
        const Ahead<void> found = allocateDataAhead(bytes, doomed);
        return {static_cast<T*>(found.data), found.overlaps};
    }

    /// Frees memory returned by `allocate`.
    template <class T> void deallocate(T* data) { deallocateData(data); }

    /// Grows the heap to `newSize` bytes, which the mapping must cover.  The difference must be a multiple of 8.  Does
    /// nothing if `newSize` does not exceed the current size.
    void resize(std::size_t newSize);

    /// Appends `bytes`, a multiple of 8 and at least 16, as a free block.
    void grow(unsigned bytes);

    /// Size of the block that contains `data`, including its header.
    template <class T> [[nodiscard]] unsigned getBlockSize(const T* data) const {
        return static_cast<unsigned>(block_ctrl::parse(const_cast<T*>(data))->getSize());
    }

    /// Number of units for `bytes`, rounded up.
    [[nodiscard]] static constexpr unsigned getBlocks(unsigned bytes) noexcept {
        return bytes / unitSize + (bytes % unitSize ? 1 : 0);
    }

    [[nodiscard]] unsigned getSize() const noexcept { return m_header.size; }
    [[nodiscard]] unsigned getTtlAllocated() const noexcept { return m_header.ttlAllocated; }

    /// With 0: whether the heap has been formatted.  Otherwise: whether a mapping of `mappedSize` bytes covers the
    /// heap.
    [[nodiscard]] bool isInitialized(unsigned mappedSize) const noexcept {
        return mappedSize ? m_header.size <= mappedSize : m_header.ttlAllocated != 0;
    }

    /// Whether `pointer` is in [lowerBound(), upperBound()), the range of the blocks.
    [[nodiscard]] bool isInRange(const void* pointer) const noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(pointer);
        return lowerBound() <= address && address < upperBound();
    }
    [[nodiscard]] std::uintptr_t lowerBound() const noexcept { return base() + m_header.headerSize; }
    [[nodiscard]] std::uintptr_t upperBound() const noexcept { return base() + m_header.size; }

    /// The sentinel of the free list.
    [[nodiscard]] block_ctrl* end() noexcept { return &m_header.sentinel; }

private:
    [[nodiscard]] std::uintptr_t base() const noexcept { return reinterpret_cast<std::uintptr_t>(this); }

    /// A free block to allocate from, wholly or in part.
    struct FreeBlock;

    static FreeBlock findFreeBlock(QelFreeListWalk& walk, unsigned need);
    static FreeBlock findFreeBlockAhead(QelFreeListWalk& walk, unsigned need, const block_ctrl* doomed);

    [[nodiscard]] void* allocateData(std::size_t bytes);
    [[nodiscard]] Ahead<void> allocateDataAhead(std::size_t bytes, void* doomed);
    [[nodiscard]] void* take(QelFreeListWalk& walk, const FreeBlock& from, unsigned need);
    void deallocateData(void* data);
    void link(QelFreeListWalk& walk, block_ctrl* block);
    [[nodiscard]] bool liesWithin(block_ctrl* block, const block_ctrl* next);

    header_t m_header;

    static_assert(sizeof(block_ctrl) == block_ctrl::headSize);
    static_assert(offsetof(block_ctrl, next) == 0);
    static_assert(offsetof(block_ctrl, blocks) == 4);
    static_assert(sizeof(header_t) == 20);
    static_assert(offsetof(header_t, sentinel) == 0);
    static_assert(offsetof(header_t, ttlAllocated) == 8);
    static_assert(offsetof(header_t, size) == 12);
    static_assert(offsetof(header_t, headerSize) == 16);
};

static_assert(sizeof(QelSharedMemoryManager) == 20);

} // namespace Qel
