#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <new>

namespace Qel {

/// Memory for the values of a tree. Released blocks are reused for values of the same size class, so the memory of a
/// tree that is edited repeatedly stays bounded.
///
/// Replaces std::pmr::unsynchronized_pool_resource, which in libstdc++ 12 dereferences a null pointer after some failed
/// allocations.
class QelTextPool {
public:
    /// Size of the block for `size` bytes: a multiple of 16, and from 128 bytes on at most 25 % more than `size`.
    [[nodiscard]] static std::size_t capacityFor(std::size_t size) noexcept {
        const std::size_t step = stepFor(size);
        return (size + step - 1) / step * step;
    }

    /// `capacity` must be a result of capacityFor().
    [[nodiscard]] char* allocate(std::size_t capacity) {
        Free*& first = m_free[classOf(capacity)];
        if (!first)
            return static_cast<char*>(m_arena.allocate(capacity, granule));
        Free* const block = first;
        first = block->next;
        return reinterpret_cast<char*>(block);
    }
    void release(void* block, std::size_t capacity) noexcept {
        Free*& first = m_free[classOf(capacity)];
        first = new (block) Free{first};
    }

private:
    struct Free {
        Free* next;
    };

    static constexpr std::size_t granule = 16;
    // Size classes are the multiples of the granule up to 128 bytes, then four per power of two.
    static constexpr unsigned smallWidth = 7;
    static constexpr std::size_t smallClasses = (std::size_t{1} << smallWidth) / granule;
    static constexpr unsigned largestWidth = 32;
    static constexpr std::size_t classes = smallClasses + 4 * (largestWidth - smallWidth);

    static unsigned widthOf(std::size_t size) noexcept { return static_cast<unsigned>(std::bit_width(size - 1)); }
    static std::size_t stepFor(std::size_t size) noexcept {
        return size <= smallClasses * granule ? granule : std::size_t{1} << (widthOf(size) - 3);
    }
    static std::size_t classOf(std::size_t capacity) noexcept {
        const std::size_t steps = capacity / stepFor(capacity);
        if (capacity <= smallClasses * granule)
            return steps - 1;
        return smallClasses + std::size_t{4} * (widthOf(capacity) - smallWidth - 1) + (steps - 5);
    }

    std::pmr::monotonic_buffer_resource m_arena;
    std::array<Free*, classes> m_free{};
};

} // namespace Qel
