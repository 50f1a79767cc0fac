#pragma once

// The algorithms of QelCacheLogic, for the source file that instantiates it.

#include <algorithm>
#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <utility>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/QelCacheChangesImpl.h"
#include "QelCore/QelCacheLogic.h"
#include "QelCore/QelFiles.h"
#include "QelCore/QelStoreOrder.h"

namespace Qel {

namespace CacheLogicDetail {
/// Bytes to map before the file size is known, rounded up to pages.
inline constexpr unsigned firstMapping = 1816;
} // namespace CacheLogicDetail

// ---------------------------------------------------------------------------------------------------------- the header

template <class ItemID, class ItemValue, class Allocator>
QelCacheLogic<ItemID, ItemValue, Allocator>::CacheHeader::CacheHeader(unsigned size)
    : heap(size, sizeof(CacheHeader)), snapshot(nullptr), magic(CacheFormat::magic), headerBytes(sizeof(CacheHeader)),
      keyBytes(sizeof(ItemID)), revision(CacheFormat::revision), valueBytes(sizeof(ItemValue)),
      generation(CacheFormat::firstGeneration), valid(0) {
    static_assert(sizeof(CacheHeader) == CacheFormat::headerBytes);
    static_assert(offsetof(CacheHeader, heap) == 0);
    static_assert(offsetof(CacheHeader, snapshot) == 20);
    static_assert(offsetof(CacheHeader, lock) == 24);
    static_assert(offsetof(CacheHeader, magic) == 28);
    static_assert(offsetof(CacheHeader, headerBytes) == 32);
    static_assert(offsetof(CacheHeader, keyBytes) == 36);
    static_assert(offsetof(CacheHeader, revision) == 40);
    static_assert(offsetof(CacheHeader, valueBytes) == 44);
    static_assert(offsetof(CacheHeader, generation) == 48);
    static_assert(offsetof(CacheHeader, valid) == CacheFormat::validOffset);
    static_assert(sizeof(ItemID) == 16 && sizeof(record_t) == 20 && sizeof(ValueSet) == 28 && sizeof(Snapshot) == 32);
    static_assert(offsetof(Snapshot, refCount) == 0);
    static_assert(offsetof(Snapshot, values) == 4);

    auto* first = new (heap.template allocate<Snapshot>(sizeof(Snapshot))) Snapshot;
    first->refCount.setRefCount(1);
    snapshot = first;
    valid = 1;
}

template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::CacheHeader::validate() const noexcept {
    if (valid == 0)
        return cacheInvalid;
    if (headerBytes != sizeof(CacheHeader))
        return cacheBadHeaderSize;
    if (keyBytes != sizeof(ItemID))
        return cacheBadKeySize;
    if (magic != CacheFormat::magic)
        return cacheBadMagic;
    if (revision != CacheFormat::revision)
        return cacheBadRevision;
    return valueBytes == sizeof(ItemValue) ? cacheSuccess : cacheBadValueSize;
}

// --------------------------------------------------------------------------------------------- attaching and detaching

template <class ItemID, class ItemValue, class Allocator>
QelCacheLogic<ItemID, ItemValue, Allocator>::QelCacheLogic(const std::string& id, unsigned maxItemSize,
                                                           unsigned maxLists, unsigned maxStorageSize)
    : m_id(id), m_maxItemSize(maxItemSize), m_maxLists(maxLists),
      m_maxStorageSize(std::min(maxStorageSize, static_cast<unsigned>(std::numeric_limits<std::int32_t>::max()))) {}

template <class ItemID, class ItemValue, class Allocator>
QelCacheLogic<ItemID, ItemValue, Allocator>::~QelCacheLogic() {
    if (!isAccessible())
        return;
    // Wait until no other thread of this process accesses the mapping under the lock.
    const bool locked = Allocator::Lock::lock(m_lockedFile.get()) == 0;
    QEL_CHECK(locked, CacheLogicDetail::sourcePath);
    Allocator::Lock::unlock(m_lockedFile.get());
}

template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::createInstance(const std::string& id, bool isFirst, bool flag,
                                                                 unsigned maxItemSize, unsigned maxLists,
                                                                 unsigned maxStorageSize)
    -> boost::intrusive_ptr<QelCacheLogic> {
    boost::intrusive_ptr<QelCacheLogic> cache(new QelCacheLogic(id, maxItemSize, maxLists, maxStorageSize));
    if (!isFirst) {
        const int code = cache->initialize(flag, true);
        if (code == cacheSuccess)
            return cache;
        removeLockedCacheFile(id.c_str(), code);
    }
    return cache->initialize(flag, false) == cacheSuccess ? cache : nullptr;
}

template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::initialize(bool, bool invalidate) {
    m_protect = false;
    const StoragePtr attached(new Storage(m_id));
    const unsigned page = Storage::getMemoryPageSize();
    const unsigned first = (CacheLogicDetail::firstMapping / page + 1) * page;
    replaceStorage(attached);
    m_header = static_cast<CacheHeader*>(attached->getStorage(first, nullptr));
    if (!isAccessible())
        return detach(cacheNotMapped);
    m_lockedFile.reset(new Storage(m_id));
    m_lockedFile->share(*attached);
    const int result = formatOrValidate(invalidate);
    return result == cacheSuccess ? cacheSuccess : detach(result);
}

/// Formats a new file, or validates an existing one.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::formatOrValidate(bool invalidate) {
    const storageLockGuard_t guard(*this);
    if (!guard.isLocked())
        return refuse(true, cacheNotLocked);
    if (!header()->heap.isInitialized(0))
        new (header()) CacheHeader(m_storage->getSize());
    else if (const int failed = header()->validate())
        return refuse(invalidate, failed);
    static_cast<void>(unsafe_checkSize()); // if the heap exceeds the mapping, acquireSnapshot fails
    StoragePtr pinned;
    Snapshot* snapshot = acquireSnapshot(pinned);
    if (!snapshot)
        return refuse(invalidate, cacheNoSnapshot);
    QEL_CHECK(snapshot->isAcquired(), CacheLogicDetail::sourcePath);
    snapshot->refCount.decRef();
    m_storage->syncStorage();
    return cacheSuccess;
}

template <class ItemID, class ItemValue, class Allocator> int QelCacheLogic<ItemID, ItemValue, Allocator>::reinit() {
    return detach(cacheSuccess);
}

/// Drops header and mapping and returns `result`.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::detach(int result) {
    m_header = nullptr;
    m_lockedFile.reset();
    replaceStorage(nullptr);
    return result;
}

/// Returns `result`; with `invalidate` also marks the file as unusable for all processes.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::refuse(bool invalidate, int result) const {
    if (invalidate)
        header()->valid = 0;
    return result;
}

/// Makes `storage` the current mapping.  The old one, unless still referenced, is destroyed after the mutex has been
/// released, because closing a file acquires the same mutex.
template <class ItemID, class ItemValue, class Allocator>
void QelCacheLogic<ItemID, ItemValue, Allocator>::replaceStorage(StoragePtr storage) {
    const std::lock_guard guard(forkMutex());
    m_storage.swap(storage);
}

// ------------------------------------------------------------------------------------------------- locking and growing

template <class ItemID, class ItemValue, class Allocator> int QelCacheLogic<ItemID, ItemValue, Allocator>::lock() {
    if (!m_lockedFile)
        return cacheNotAttached;
    if (const int failed = Allocator::Lock::lock(m_lockedFile.get()))
        return failed;
    if (m_protect)
        m_storage->protect(false);
    const int failed = unsafe_checkSize();
    if (failed)
        unlock();
    return failed;
}

/// No-op in the child of a fork that happened while the lock was held: the child is detached.
template <class ItemID, class ItemValue, class Allocator> void QelCacheLogic<ItemID, ItemValue, Allocator>::unlock() {
    if (!m_lockedFile)
        return;
    if (m_protect && m_storage)
        m_storage->protect(true);
    Allocator::Lock::unlock(m_lockedFile.get());
}

/// Maps the whole heap if another process has grown it.  If the size in the header exceeds the file or the limit, the
/// file is damaged or foreign, and it is not mapped.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::unsafe_checkSize() {
    const Allocator& heap = header()->heap;
    if (heap.isInitialized(m_storage->getSize()))
        return 0;
    if (heap.getSize() > m_maxStorageSize || !m_storage->isInFile(heap.getSize())) {
        setErrorMessage("cannot use '%s': its header specifies a size of %u bytes, which exceeds the file or the limit "
                        "of the cache",
                        m_id.c_str(), heap.getSize());
        return cacheOutOfSpace;
    }
    const StoragePtr larger(new Storage(m_id));
    void* memory = larger->getStorage(heap.getSize(), m_storage.get());
    if (!memory)
        return cacheOutOfSpace;
    if (m_protect)
        m_storage->protect(true);
    replaceStorage(larger);
    m_header = static_cast<CacheHeader*>(memory);
    return 0;
}

/// Allocates in the file, growing it if necessary; returns null on failure.  Growth moves the cache to a new mapping,
/// so every address computed earlier must be rebased.
template <class ItemID, class ItemValue, class Allocator>
template <class T>
T* QelCacheLogic<ItemID, ItemValue, Allocator>::unsafe_allocate(unsigned bytes) {
    T* block = header()->heap.template allocate<T>(bytes);
    while (!block && unsafe_extend(bytes))
        block = header()->heap.template allocate<T>(bytes);
    return block;
}

/// Grows the file by a fifth or by room for five blocks of `bytes`, whichever is more.
template <class ItemID, class ItemValue, class Allocator>
bool QelCacheLogic<ItemID, ItemValue, Allocator>::unsafe_extend(unsigned bytes) {
    const std::uint64_t page = Storage::getMemoryPageSize();
    const unsigned current = m_storage->getSize();
    const std::uint64_t wanted = current + std::max<std::uint64_t>(current / 5, std::uint64_t{bytes} * 5);
    const std::uint64_t size = (wanted + page - 1) / page * page;
    if (m_maxStorageSize < size)
        return false;
    m_storage->syncStorage();
    if (m_storage->extend(static_cast<unsigned>(size)))
        return false;
    const StoragePtr larger(new Storage(m_id));
    void* memory = larger->getStorage(static_cast<unsigned>(size), m_storage.get());
    if (!memory)
        return false;
    if (m_protect)
        m_storage->protect(true);
    replaceStorage(larger);
    m_header = static_cast<CacheHeader*>(memory);
    header()->heap.resize(m_storage->getSize());
    return true;
}

template <class ItemID, class ItemValue, class Allocator>
template <class T>
void QelCacheLogic<ItemID, ItemValue, Allocator>::unsafe_deallocate(T* data) {
    header()->heap.deallocate(data);
}

// ----------------------------------------------------------------------------------------------------------- snapshots

/// Whether the snapshot that the header points to is within the readable mapping, according to its own block header and
/// counters.  Always true unless the file is damaged.
template <class ItemID, class ItemValue, class Allocator>
bool QelCacheLogic<ItemID, ItemValue, Allocator>::isSnapshotMemoryAccessible(Snapshot* snapshot) const {
    using block_ctrl = typename Allocator::block_ctrl;
    const Allocator& heap = header()->heap;
    const auto address = reinterpret_cast<std::uintptr_t>(snapshot);
    const std::uintptr_t limit =
        reinterpret_cast<std::uintptr_t>(header()) + std::min(heap.getSize(), m_storage->getSize());
    const std::uintptr_t first =
        reinterpret_cast<std::uintptr_t>(header()) + sizeof(CacheHeader) + block_ctrl::headSize;
    if (!snapshot || address % Allocator::unitSize != 0 || address < first || address >= limit ||
        limit - address < sizeof(Snapshot))
        return false;
    const std::uint64_t data = block_ctrl::parse(snapshot)->getSize() - block_ctrl::headSize;
    const std::uint64_t slots = std::uint64_t{snapshot->values.size()} + snapshot->values.getReservedItemCount();
    return data <= limit - address && sizeof(Snapshot) + (slots - 1) * sizeof(record_t) <= data;
}

template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::currentSnapshot() const -> Snapshot* {
    Snapshot* snapshot = header()->snapshot.get();
    QEL_CHECK(snapshot, CacheLogicDetail::sourcePath);
    return snapshot;
}

template <class ItemID, class ItemValue, class Allocator>
template <class T>
T* QelCacheLogic<ItemID, ItemValue, Allocator>::rebased(T* data, const void* base) const {
    return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(data) + reinterpret_cast<std::uintptr_t>(header()) -
                                reinterpret_cast<std::uintptr_t>(base));
}

template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::acquireSnapshot(StoragePtr& storage) -> Snapshot* {
    Snapshot* snapshot = header()->snapshot.get();
    if (!isSnapshotMemoryAccessible(snapshot))
        return nullptr;
    storage = m_storage;
    snapshot->refCount.incRef();
    return snapshot;
}

/// Drops a reference to `snapshot`; the last one frees it and its records.
template <class ItemID, class ItemValue, class Allocator>
void QelCacheLogic<ItemID, ItemValue, Allocator>::releaseSnapshot(Snapshot* snapshot) {
    snapshot->refCount.decRef();
    if (snapshot->refCount.isLocked())
        return;
    for (record_t& record : snapshot->values)
        releaseItem(record.data.get());
    unsafe_deallocate(snapshot);
}

template <class ItemID, class ItemValue, class Allocator>
void QelCacheLogic<ItemID, ItemValue, Allocator>::releaseItem(ItemValue* item) {
    if (!item)
        return;
    item->refCount.decRef();
    if (!item->refCount.isLocked())
        unsafe_deallocate(item);
}

/// Whether a snapshot may be modified in place for the change `hint`.
template <class ItemID, class ItemValue, class Allocator>
bool QelCacheLogic<ItemID, ItemValue, Allocator>::isWritable(const Snapshot& snapshot, eSnapshotHint hint) {
    return !snapshot.isAcquired() && (hint != snapshotForInsert || snapshot.values.getReservedItemCount() != 0);
}

/// Size in bytes of a copy for the change `hint`: only an insertion needs an additional slot.
template <class ItemID, class ItemValue, class Allocator>
unsigned QelCacheLogic<ItemID, ItemValue, Allocator>::bytesOfCopy(const Snapshot& snapshot, eSnapshotHint hint) {
    return hint == snapshotForInsert ? snapshot.getNextMemorySize() : snapshot.getUsedMemorySize();
}

/// Returns the current snapshot for modification (copy-on-write): if it must not be modified, replaces it by a copy
/// first.  Returns null and changes nothing if there is no room for a copy.
template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::getWritableSnapshot(eSnapshotHint hint) -> Snapshot* {
    const Snapshot* current = currentSnapshot();
    if (isWritable(*current, hint))
        return currentSnapshot();
    const unsigned bytes = bytesOfCopy(*current, hint);
    auto* block = unsafe_allocate<Snapshot>(bytes);
    if (!block)
        return nullptr;
    auto* copy = new (block) Snapshot;
    *copy = *currentSnapshot();
    copy->adjustSelf(bytes);
    makeCurrent(copy);
    return copy;
}

/// Makes the header point to `copy`, a copy of the current snapshot, and drops its reference to the old one.
template <class ItemID, class ItemValue, class Allocator>
void QelCacheLogic<ItemID, ItemValue, Allocator>::makeCurrent(Snapshot* copy) {
    Snapshot* old = currentSnapshot();
    const bool acquired = old->isAcquired();
    if (acquired) {
        copy->refCount.setRefCount(1);
        for (record_t& record : old->values)
            if (ItemValue* item = record.data.get())
                item->refCount.incRef();
    }
    // Header first: a crash before the release leaks bytes and has no other effect.
    keepStoreOrder();
    header()->snapshot = copy;
    keepStoreOrder();
    if (acquired)
        releaseSnapshot(old);
    else
        unsafe_deallocate(old);
}

// ----------------------------------------------------------------------------------------------------- records, by key

template <class ItemID, class ItemValue, class Allocator>
boost::shared_ptr<ItemValue> QelCacheLogic<ItemID, ItemValue, Allocator>::getCopy(const ItemID& id) {
    const storageLockGuard_t guard(*this);
    const ItemValue* record = guard.isLocked() ? currentSnapshot()->values.find(id) : nullptr;
    if (!record)
        return nullptr;
    const unsigned length = record->length();
    QEL_CHECK(length >= sizeof(ItemValue), CacheLogicDetail::sourcePath);
    void* copy = QelCachedItem::allocator_free(length);
    if (!copy)
        return nullptr;
    std::memcpy(copy, static_cast<const void*>(record), length);
    return boost::shared_ptr<ItemValue>(static_cast<ItemValue*>(copy), QelCachedItem::deleter_free);
}

template <class ItemID, class ItemValue, class Allocator>
unsigned QelCacheLogic<ItemID, ItemValue, Allocator>::getTotalAllocatedSize() {
    const storageLockGuard_t guard(*this);
    return guard.isLocked() ? header()->heap.getTtlAllocated() : 0;
}

template <class ItemID, class ItemValue, class Allocator>
unsigned QelCacheLogic<ItemID, ItemValue, Allocator>::getAchiveableSize() {
    const storageLockGuard_t guard(*this);
    if (!guard.isLocked())
        return 0;
    const Allocator& heap = header()->heap;
    Snapshot* snapshot = currentSnapshot();
    unsigned size = static_cast<unsigned>(sizeof(CacheHeader)) + heap.getBlockSize(snapshot);
    for (const record_t& record : snapshot->values)
        if (const ItemValue* item = record.data.get())
            size += heap.getBlockSize(item);
    return size;
}

// --------------------------------------------------------------------------------------------------------------- lists

template <class ItemID, class ItemValue, class Allocator>
QelCacheLogic<ItemID, ItemValue, Allocator>::ValuesList::ValuesList(boost::intrusive_ptr<QelCacheLogic> cache)
    : m_cache(std::move(cache)) {
    if (!m_cache)
        return;
    const storageLockGuard_t guard(*m_cache);
    if (!guard.isLocked())
        return;
    m_snapshot = m_cache->acquireSnapshot(m_storage);
    if (m_snapshot)
        m_cache->countLists(1);
}

template <class ItemID, class ItemValue, class Allocator>
QelCacheLogic<ItemID, ItemValue, Allocator>::ValuesList::~ValuesList() {
    if (!m_cache || !m_snapshot)
        return;
    const storageLockGuard_t guard(*m_cache);
    if (!guard.isLocked())
        return;
    m_cache->countLists(-1);
    // If the cache has re-attached to a replacement of the file, the snapshot is not in the new file.
    if (m_storage->isSameFile(*m_cache->m_storage))
        m_cache->releaseSnapshot(m_cache->rebased(m_snapshot, m_storage->getMemory()));
}

template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::ValuesList::reinit() {
    m_snapshot = nullptr;
    return 0;
}

} // namespace Qel
