#pragma once

#include <cstddef>

namespace Qel::TestSupport {

/// Calls of operator new by this test program and the libraries in it, so far.
[[nodiscard]] std::size_t allocations() noexcept;

/// Those that `work` makes.
template <class Work> [[nodiscard]] std::size_t allocationsOf(Work&& work) {
    const std::size_t before = allocations();
    work();
    return allocations() - before;
}

/// While it lives, operator new fails after this many more calls.  At most one at a time.
class FailingAllocations {
public:
    explicit FailingAllocations(std::size_t after) noexcept;
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();
};

} // namespace Qel::TestSupport
