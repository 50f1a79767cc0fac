#pragma once

#include <atomic>

#include "QelCommon/Export.h"

namespace Qel {

/// Base of objects in process memory that are shared through boost::intrusive_ptr.  The counter is atomic and starts at
/// 0; the release that returns it to 0 deletes the object.
class QEL_EXPORT QelRefCounter {
public:
    QelRefCounter() = default;
    QelRefCounter(const QelRefCounter&) = delete;
    QelRefCounter& operator=(const QelRefCounter&) = delete;
    virtual ~QelRefCounter() = default;

    void addRef() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept {
        // The last reference cannot be copied concurrently, and a plain store is cheaper than an atomic
        // read-modify-write.
        if (m_references.load(std::memory_order_acquire) == 1)
            m_references.store(0, std::memory_order_relaxed);
        else if (m_references.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        delete this;
    }

    /// Whether a reference exists: false during construction and destruction.
    [[nodiscard]] bool isOwned() const noexcept { return m_references.load(std::memory_order_relaxed) > 0; }

private:
    mutable std::atomic<int> m_references{0};
};

inline void intrusive_ptr_add_ref(const QelRefCounter* object) noexcept {
    object->addRef();
}
inline void intrusive_ptr_release(const QelRefCounter* object) noexcept {
    object->release();
}

} // namespace Qel
