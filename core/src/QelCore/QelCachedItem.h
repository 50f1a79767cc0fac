#pragma once

#include <cstddef>
#include <cstdlib>

#include "QelCommon/Debug.h"

namespace Qel {

/// A reference count in the cache file: a plain number, since it only changes under the file's lock.
template <class T> class QelCachedItemRefCounterBase {
public:
    void incRef() noexcept { ++m_value; }
    void decRef() {
        QEL_CHECK(m_value >= 0, "core/src/QelCore/QelCacheLogic");
        --m_value;
    }
    /// Whether anybody holds a reference.
    [[nodiscard]] bool isLocked() const noexcept { return m_value > 0; }
    void setRefCount(T value) noexcept { m_value = value; }
    [[nodiscard]] T getRefCount() const noexcept { return m_value; }

private:
    T m_value = 0;
};

/// Base of every item that lies in the cache file: a plain structure, copied as bytes, without virtual operations.
struct QelCachedItem {
    QelCachedItem() = default;
    /// A count belongs to the place where an item lies, so a copy starts with its own.
    QelCachedItem(const QelCachedItem&) noexcept {}
    QelCachedItem& operator=(const QelCachedItem&) noexcept { return *this; } // NOLINT: nothing is copied on purpose

    /// Memory of zeros for a private item of `size` bytes, or null.  Goes back through `deleter_free`.
    [[nodiscard]] static void* allocator_free(std::size_t size) noexcept { return std::calloc(1, size); }
    static void deleter_free(void* item) noexcept { std::free(item); }

    /// offset 0: the number of snapshots that list the item; guarded by the file's lock.  Means nothing outside the
    /// file.
    QelCachedItemRefCounterBase<int> refCount;
};

static_assert(sizeof(QelCachedItem) == 4);

/// Deleter of a shared pointer to an item inside the file, which the pointer doesn't own.
inline void deleter_fake(const void*) noexcept {}

} // namespace Qel
