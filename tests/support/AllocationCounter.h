#pragma once

#include <cstddef>

namespace Qel::TestSupport {

/// Number of calls of operator new so far by this test program and its libraries.
[[nodiscard]] std::size_t allocations() noexcept;

/// Number of calls of operator new during `work`.
template <class Work> [[nodiscard]] std::size_t allocationsOf(Work&& work) {
    const std::size_t before = allocations();
    work();
    return allocations() - before;
}

/// During its lifetime, operator new fails after `after` more calls. At most one object may exist at a time.
class FailingAllocations {
public:
    explicit FailingAllocations(std::size_t after) noexcept;
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();
};

} // namespace Qel::TestSupport
