#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> count{0};
std::atomic<std::size_t> left{unlimited}; // remaining calls before all calls fail

/// Counts a call. Returns false if it must fail.
bool take() noexcept {
    count.fetch_add(1, std::memory_order_relaxed);
    std::size_t before = left.load(std::memory_order_relaxed);
    if (before == unlimited)
        return true;
    while (before != 0 && !left.compare_exchange_weak(before, before - 1, std::memory_order_relaxed)) {
    }
    return before != 0;
}

void* allocate(std::size_t size) noexcept {
    return take() ? std::malloc(size != 0 ? size : 1) : nullptr;
}

} // namespace

namespace Qel::TestSupport {

std::size_t allocations() noexcept {
    return count.load(std::memory_order_relaxed);
}

FailingAllocations::FailingAllocations(std::size_t after) noexcept {
    left.store(after, std::memory_order_relaxed);
}

FailingAllocations::~FailingAllocations() {
    left.store(unlimited, std::memory_order_relaxed);
}

} // namespace Qel::TestSupport

void* operator new(std::size_t size) {
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    const auto granule = static_cast<std::size_t>(alignment);
    if (void* const memory = take() ? std::aligned_alloc(granule, (size + granule - 1) / granule * granule) : nullptr)
        return memory;
    throw std::bad_alloc();
}

// The sanitizers replace the nothrow form too, and theirs does not call the throwing one.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
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
