#pragma once

#include <mutex>

namespace Qel {

/// A lock among the threads of one process, which the thread that holds it may take again; it is free when it has been
/// given back as often.  A static one is usable before and while static objects are initialised.
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

/// Holds a lock of any kind with `lock()` and `unlock()` for its own lifetime.
template <class Lock> using QelGuardT = std::lock_guard<Lock>;

} // namespace Qel
