#pragma once

#include <atomic>

namespace Qel {

/// Keeps the compiler from moving stores to a mapped file across this place.
///
/// The kernel ends a process between two instructions and keeps every store of the instructions before, so that the
/// order in which the compiler leaves them is the order in which other processes find them.  The processor needs no
/// fence for that.
inline void keepStoreOrder() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

} // namespace Qel
