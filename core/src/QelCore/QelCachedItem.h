#pragma once

#include <cstddef>
#include <cstdlib>

#include "QelCommon/Debug.h"

namespace Qel {

/// A reference count in the cache file.  Not atomic: it only changes under the file lock.
template <class T> class QelCachedItemRefCounterBase {
public:
    void incRef() noexcept { ++m_value; }
    void decRef() {
        QEL_CHECK(m_value >= 0, "core/src/QelCore/QelCacheLogic");
        --m_value;
    }
    /// Whether the count is positive.
    [[nodiscard]] bool isLocked() const noexcept { return m_value > 0; }
    void setRefCount(T value) noexcept { m_value = value; }
    [[nodiscard]] T getRefCount() const noexcept { return m_value; }

private:
    T m_value = 0;
};

/// Base of every record in the cache file: a plain structure that is copied bytewise and has no virtual functions.
struct QelCachedItem {
    QelCachedItem() = default;
    /// The count belongs to the location of a record, so copying does not transfer it.
    QelCachedItem(const QelCachedItem&) noexcept {}
    QelCachedItem& operator=(const QelCachedItem&) noexcept { return *this; } // NOLINT: intentionally copies nothing

    /// Allocates `size` zeroed bytes for a private record; null on failure.  Release with `deleter_free`.
    [[nodiscard]] static void* allocator_free(std::size_t size) noexcept { return std::calloc(1, size); }
    static void deleter_free(void* item) noexcept { std::free(item); }

    /// offset 0: number of snapshots that list the record; guarded by the file lock.  Unused outside the file.
    QelCachedItemRefCounterBase<int> refCount;
};

static_assert(sizeof(QelCachedItem) == 4);

/// No-op deleter for a shared pointer to a record inside the file, which the pointer does not own.
inline void deleter_fake(const void*) noexcept {}

} // namespace Qel
