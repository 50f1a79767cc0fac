#pragma once

// Changes of single records in QelCacheLogic: a part of QelCacheLogicImpl.h, which includes it.

#include <cstring>
#include <new>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/QelStoreOrder.h"

namespace Qel {

namespace CacheLogicDetail {
inline constexpr const char* sourcePath = "core/src/QelCore/QelCacheLogic";
} // namespace CacheLogicDetail

/// Calls `change(index)` under the file lock and returns its result.  For an insertion, `id` must be missing and
/// `index` is the position to insert it at; for other changes it must be present and `index` is its position.  If this
/// is not the case, or the cache is not attached or cannot be locked, returns the corresponding QelCacheResult without
/// calling `change`.
template <class ItemID, class ItemValue, class Allocator>
template <class Change>
int QelCacheLogic<ItemID, ItemValue, Allocator>::changeItem(const ItemID& id, eSnapshotHint hint,
                                                            const Change& change) {
    if (!isAccessible())
        return cacheNotAttached;
    const storageLockGuard_t guard(*this);
    if (!guard.isLocked())
        return cacheNotLocked;
    std::size_t index;
    const bool exists = currentSnapshot()->values.findIndex(id, index);
    if (hint == snapshotForInsert && exists)
        return cacheKeyExists;
    if (hint != snapshotForInsert && !exists)
        return cacheKeyMissing;
    return change(index);
}

template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::insertItem(const ItemID& id, const ItemSource& source) {
    return changeItem(id, snapshotForInsert, [&](std::size_t index) {
        if (!isWritable(*currentSnapshot(), snapshotForInsert))
            return insertIntoCopy(id, index, source);
        const ItemBytes item = readItem(source, nullptr);
        const int refused = checkItem(item);
        return refused ? refused : insertIntoSlot(id, index, item);
    });
}

/// Inserts into a free slot of the current array.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::insertIntoSlot(const ItemID& id, std::size_t index,
                                                                const ItemBytes& item) {
    const NewItem stored = storeItem(item);
    if (stored.record)
        currentSnapshot()->values.insertAt(index, id, stored.record);
    return stored.result;
}

/// Copies the array to a block with one more slot and inserts the record during the copy.  If the record cannot be
/// stored, the copy still becomes current, with a free slot.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::insertIntoCopy(const ItemID& id, std::size_t index,
                                                                const ItemSource& source) {
    const unsigned bytes = bytesOfCopy(*currentSnapshot(), snapshotForInsert);
    auto* block = unsafe_allocate<Snapshot>(bytes);
    if (!block)
        return cacheOutOfSpace;
    const void* base = header();
    const ItemBytes item = readItem(source, nullptr);
    if (!isAccessible())
        return cacheNotAttached;
    const bool acceptable = isAcceptable(item);
    const Placement place = acceptable ? placeBesideArray(item.length) : Placement{};
    auto* copy = new (rebased(block, base)) Snapshot;
    if (!place.record) {
        *copy = *currentSnapshot();
        copy->adjustSelf(bytes);
        makeCurrent(copy);
        if (!acceptable)
            return checkItem(item);
        // The heap had no room for a provisional record, but the old array has been freed now, so try again.
        return place.isProvisional ? insertIntoSlot(id, index, item) : cacheOutOfSpace;
    }
    writeItem(place.record, item);
    copy->assignInserting(*currentSnapshot(), index, id, place.record);
    copy->adjustSelf(bytes);
    makeCurrent(copy);
    if (place.isProvisional)
        settle(copy->values.at(index), item);
    return cacheSuccess;
}

/// Allocates `length` bytes in the block that best fit would select if the current array had been freed.  If that block
/// overlaps the array, allocates a provisional block instead.  If readers hold the array, it will not be freed and the
/// allocation is an ordinary one.  The file may grow.
template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::placeBesideArray(unsigned length) -> Placement {
    if (currentSnapshot()->isAcquired())
        return {unsafe_allocate<ItemValue>(length), false};
    while (true) {
        Allocator& heap = header()->heap;
        const auto ahead = heap.template allocateAhead<ItemValue>(length, currentSnapshot());
        if (ahead.overlaps)
            return {heap.template allocate<ItemValue>(length), true};
        if (ahead.data || !unsafe_extend(length))
            return {ahead.data, false};
    }
}

/// Moves a provisional record to the block that it would occupy if it had been allocated after the old array was freed.
/// The entry points to a complete record throughout, unless the heap has no room for both copies.
template <class ItemID, class ItemValue, class Allocator>
void QelCacheLogic<ItemID, ItemValue, Allocator>::settle(record_t& entry, const ItemBytes& item) {
    Allocator& heap = header()->heap;
    while (true) {
        ItemValue* old = entry.data.get();
        const auto ahead = heap.template allocateAhead<ItemValue>(item.length, old);
        ItemValue* record = ahead.overlaps ? heap.template allocate<ItemValue>(item.length) : ahead.data;
        if (!record) {
            // No room for both copies: a crash before the entry is updated leaves it pointing to a free block.
            heap.deallocate(old);
            old = nullptr;
            record = heap.template allocate<ItemValue>(item.length);
            QEL_CHECK(record, CacheLogicDetail::sourcePath);
        }
        writeItem(record, item);
        keepStoreOrder();
        entry.data = record;
        keepStoreOrder();
        if (old)
            heap.deallocate(old);
        if (!ahead.overlaps || !old)
            return;
    }
}

template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::updateItem(const ItemID& id, const ItemSource& source) {
    return changeItem(id, snapshotForUpdate, [&](std::size_t index) { return replaceItem(index, source); });
}

/// Replaces the record at `index`.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::replaceItem(std::size_t index, const ItemSource& source) {
    Snapshot* writable = getWritableSnapshot(snapshotForUpdate);
    ItemValue* old = writable && index < writable->values.size() ? writable->values.at(index).data.get() : nullptr;
    if (!old)
        return cacheOutOfSpace;
    // releaseItem() needs the count of the old record: overlaps that cache miss with the work on the new record.
    __builtin_prefetch(old);
    const void* base = header();
    const ItemBytes bytes = readItem(source, old);
    if (const int refused = checkItem(bytes))
        return refused;
    const NewItem item = storeItem(bytes);
    if (!item.record)
        return item.result;
    rebased(writable, base)->values.update(index, item.record);
    keepStoreOrder();
    releaseItem(rebased(old, base));
    return cacheSuccess;
}

/// Gets the bytes of the new record from `source`.
template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::readItem(const ItemSource& source, const ItemValue* old)
    -> ItemBytes {
    ItemBytes item;
    // The source may run arbitrary serialisation code, which must not overwrite the heap.
    if (m_protect)
        m_storage->protect(true);
    source.getBuffer(&item.data, item.length, old);
    if (m_protect && isAccessible())
        m_storage->protect(false);
    return item;
}

/// Whether `checkItem` would accept the bytes.
template <class ItemID, class ItemValue, class Allocator>
bool QelCacheLogic<ItemID, ItemValue, Allocator>::isAcceptable(const ItemBytes& item) const noexcept {
    return item.length >= sizeof(ItemValue) && item.length <= m_maxItemSize && item.data;
}

/// Returns 0, or the reason why the bytes are not a record of this cache.
template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::checkItem(const ItemBytes& item) const {
    if (!isAccessible()) // the source forked, and this is the child
        return cacheNotAttached;
    QEL_CHECK(item.length >= sizeof(ItemValue), CacheLogicDetail::sourcePath);
    if (item.length > m_maxItemSize)
        return cacheItemTooLarge;
    QEL_CHECK(item.data, CacheLogicDetail::sourcePath);
    return cacheSuccess;
}

/// Stores a record in a block of the file, with one reference.  The file may grow.
template <class ItemID, class ItemValue, class Allocator>
auto QelCacheLogic<ItemID, ItemValue, Allocator>::storeItem(const ItemBytes& item) -> NewItem {
    auto* record = unsafe_allocate<ItemValue>(item.length);
    if (!record)
        return {cacheOutOfSpace, nullptr};
    writeItem(record, item);
    return {cacheSuccess, record};
}

template <class ItemID, class ItemValue, class Allocator>
void QelCacheLogic<ItemID, ItemValue, Allocator>::writeItem(ItemValue* record, const ItemBytes& item) {
    std::memcpy(static_cast<void*>(record), item.data, item.length);
    record->refCount.setRefCount(1);
    keepStoreOrder();
}

template <class ItemID, class ItemValue, class Allocator>
int QelCacheLogic<ItemID, ItemValue, Allocator>::remove(const ItemID& id) {
    return changeItem(id, snapshotForRemove, [&](std::size_t index) {
        Snapshot* writable = getWritableSnapshot(snapshotForRemove);
        ItemValue* old = writable ? writable->values.at(index).data.get() : nullptr;
        if (!old)
            return cacheOutOfSpace;
        writable->values.remove(index);
        releaseItem(old);
        return cacheSuccess;
    });
}

} // namespace Qel
