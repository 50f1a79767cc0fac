#pragma once

#include <cstddef>
#include <cstdint>

#include "QelCore/QelSharedPointer.h"

namespace Qel {

class QelFreeListWalk;

/// A heap in the mapping of a file, from the file's first byte on.
///
/// The object is the head of the file itself: it is never made anywhere else, and attaching to a heap that exists means
/// taking the mapping's address for the object's.  Behind the header a run of blocks tiles the file without gaps, each
/// either used or in the list of free blocks, which is kept in the order of addresses with no two neighbours in it.
///
/// All integers are 32 bits wide in host order, all sizes bytes unless told otherwise.  Every operation runs under the
/// file's lock, which the caller holds.  The heap only grows.  A broken invariant is a damaged file or a programming
/// error and ends the process.
class QelSharedMemoryManager {
public:
    /// Bytes of a unit, in which blocks are measured and to which they are aligned.
    static constexpr unsigned unitSize = 8;

    /// The head of every block.
    class block_ctrl {
    public:
        static constexpr unsigned headSize = 8;

        /// Start of the user's data, 8-aligned.
        [[nodiscard]] void* getData() noexcept { return bytes() + headSize; }
        /// The block whose data starts at `data`.
        [[nodiscard]] static block_ctrl* parse(void* data) noexcept {
            return reinterpret_cast<block_ctrl*>(static_cast<char*>(data) - headSize);
        }
        /// Size, head included.  64 bits wide, as a damaged head may tell more than 32 can hold.
        [[nodiscard]] std::uint64_t getSize() const noexcept { return std::uint64_t{blocks} * unitSize; }
        /// The block that follows in memory.
        [[nodiscard]] block_ctrl* adjacent() noexcept {
            return reinterpret_cast<block_ctrl*>(reinterpret_cast<std::uintptr_t>(this) +
                                                 static_cast<std::uintptr_t>(getSize()));
        }

        pointer_type<block_ctrl> next; ///< offset 0: the next free block; means nothing in a used one
        std::uint32_t blocks = 0;      ///< offset 4: size in units, head included; never 0

    private:
        [[nodiscard]] char* bytes() noexcept { return reinterpret_cast<char*>(this); }
    };

    /// The first bytes of the file.  All fields change under the file's lock only.
    struct header_t {
        block_ctrl sentinel;            ///< offset 0: head of the free list; `blocks` is 1, so that it never merges
        std::uint32_t ttlAllocated = 0; ///< offset 8: bytes in use with header and heads; 0 in a file never formatted
        std::uint32_t size = 0;         ///< offset 12: bytes managed, from offset 0; other processes map that many
        std::uint32_t headerSize = 0;   ///< offset 16: bytes of the header, a multiple of 8
    };

    /// What containers in this heap use for a pointer.
    struct traits_type {
        template <class T> using pointer = pointer_type<T>;
    };

    /// Formats the heap over the first `total` bytes of the mapping, of which `headerBytes` belong to the header that
    /// this object is part of.  Both are multiples of 8.
    QelSharedMemoryManager(unsigned total, unsigned headerBytes);
    QelSharedMemoryManager(const QelSharedMemoryManager&) = delete;
    QelSharedMemoryManager& operator=(const QelSharedMemoryManager&) = delete;

    /// `bytes` of 8-aligned memory, its content undefined; null for 0 bytes and when no free block is large enough.
    template <class T> [[nodiscard]] T* allocate(std::size_t bytes) { return static_cast<T*>(allocateData(bytes)); }

    /// What `allocateAhead` returns.
    template <class T> struct Ahead {
        T* data;       ///< null if nothing was allocated
        bool overlaps; ///< nothing was allocated, as the block shares memory with that of `doomed`
    };

    /// Allocates the block that `allocate` would return after `deallocate(doomed)`, while `doomed` is still in use. The
    /// caller deallocates `doomed` next; until then one unit that has room for a head only may be a free block.
    template <class T, class U> [[nodiscard]] Ahead<T> allocateAhead(std::size_t bytes, U* doomed) {
        const Ahead<void> found = allocateDataAhead(bytes, doomed);
        return {static_cast<T*>(found.data), found.overlaps};
    }

    /// Gives back what `allocate` gave.
    template <class T> void deallocate(T* data) { deallocateData(data); }

    /// Grows the heap to `newSize` bytes, which exceed the present ones by a multiple of 8; does nothing if they don't
    /// exceed them.  The mapping covers them already.
    void resize(std::size_t newSize);

    /// Adds `bytes`, a multiple of 8 and at least 16, at the end as a free block.
    void grow(unsigned bytes);

    /// Size of the block behind `data`, head included.
    template <class T> [[nodiscard]] unsigned getBlockSize(const T* data) const {
        return static_cast<unsigned>(block_ctrl::parse(const_cast<T*>(data))->getSize());
    }

    /// `bytes` rounded up to units of 8.
    [[nodiscard]] static constexpr unsigned getBlocks(unsigned bytes) noexcept {
        return bytes / unitSize + (bytes % unitSize ? 1 : 0);
    }

    [[nodiscard]] unsigned getSize() const noexcept { return m_header.size; }
    [[nodiscard]] unsigned getTtlAllocated() const noexcept { return m_header.ttlAllocated; }

    /// With 0: whether the file has been formatted.  Otherwise whether a mapping of so many bytes covers the heap.
    [[nodiscard]] bool isInitialized(unsigned mappedSize) const noexcept {
        return mappedSize ? m_header.size <= mappedSize : m_header.ttlAllocated != 0;
    }

    /// Whether `pointer` lies between `lowerBound()`, the first byte behind the header, and `upperBound()`, which is
    /// outside.
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

    /// A free block that an allocation takes, wholly or in part.
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
