#pragma once

#include <atomic>

namespace Qel {

/// Base of objects in process memory that are shared through boost::intrusive_ptr.  The counter is atomic and starts at
/// 0; the release that takes it back to 0 deletes the object.
class QelRefCounter {
public:
    QelRefCounter() = default;
    QelRefCounter(const QelRefCounter&) = delete;
    QelRefCounter& operator=(const QelRefCounter&) = delete;
    virtual ~QelRefCounter() = default;

    void addRef() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept {
        // Nobody can copy a reference that only the caller has, and a plain store costs less than an exchange.
        if (m_references.load(std::memory_order_acquire) == 1)
            m_references.store(0, std::memory_order_relaxed);
        else if (m_references.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        delete this;
    }

    /// Whether anybody holds a reference now: false while an object is still being made and once it is being destroyed.
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
