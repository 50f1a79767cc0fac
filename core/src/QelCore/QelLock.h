#pragma once

#include <mutex>

namespace Qel {

/// A recursive mutex for the threads of one process.  With static storage duration it is usable before and during
/// static initialisation.
class QelLock {
public:
    constexpr QelLock() = default;
    QelLock(const QelLock&) = delete;
    QelLock& operator=(const QelLock&) = delete;

    void lock() { m_mutex.lock(); }
    void unlock() { m_mutex.unlock(); }

private:
    std::recursive_mutex m_mutex;
};

/// Scoped guard for any type with `lock()` and `unlock()`.
template <class Lock> using QelGuardT = std::lock_guard<Lock>;

} // namespace Qel
