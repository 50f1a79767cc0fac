#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

} // namespace

namespace Qel::TestSupport {

std::size_t allocations() noexcept {
    return count.load(std::memory_order_relaxed);
}

} // namespace Qel::TestSupport

void* operator new(std::size_t size) {
    count.fetch_add(1, std::memory_order_relaxed);
    if (void* const memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    count.fetch_add(1, std::memory_order_relaxed);
    const auto granule = static_cast<std::size_t>(alignment);
    if (void* const memory = std::aligned_alloc(granule, (size + granule - 1) / granule * granule))
        return memory;
    throw std::bad_alloc();
}

// The sanitizers' own doesn't call the throwing one.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    count.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
