#pragma once

#include <atomic>

namespace Qel {

/// Compiler barrier for stores to a mapped file.
///
/// The kernel kills a process between two instructions, and all stores of the preceding instructions persist.  The
/// order in which the compiler emits stores is therefore the order in which other processes find them after a crash.
/// No processor fence is needed.
inline void keepStoreOrder() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

} // namespace Qel
