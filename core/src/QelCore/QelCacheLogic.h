#pragma once

// How the cache file is shared
//
// One file holds all records of all processes.  Writers are serialised by one lock, the file lock.  A reader acquires
// the lock only to acquire a snapshot and to release it.  In between it reads without a lock, for any length of time.
//
// Why lock-free reading is safe.  A snapshot is a block that contains a reference count and a sorted array.  An entry
// of the array is a key and a pointer to a record, which is a separate block.  The header points to the current
// snapshot and counts as one reference; each reader adds one.  A snapshot with a count above 1 is copy-on-write: a
// writer copies the array to a new block, makes the header point to the copy and drops the header's reference to the
// old one.  A listed record never changes: an update writes a new record and swaps the pointer in an array that no
// reader can see.  Each record counts the snapshots that list it; its block is freed with the last of them.  A reader
// therefore sees old data at worst, never torn or freed data.  The only words that change in the blocks it can reach
// are reference counts, which it does not read.
//
// How the file grows under readers.  A Storage never changes its size or address.  The process that grows the file
// creates a second Storage.  Other processes do so when they next acquire the lock and find that the size in the header
// exceeds their mapping.  A reader keeps the Storage in which it acquired its snapshot.  Both map the same pages, and
// everything that the snapshot lists was within the older mapping when the snapshot was acquired.  The file contains
// relative pointers only, so it is valid at any address.  An address computed in one Storage is converted to the other
// by adding the distance between their bases (`rebased` in the algorithms); it is 0 if the file was mapped with room
// for its growth.
//
// How a record is inserted.  An array without a free slot is replaced by one in a new block.  A single pass copies the
// old array with the new record in position, then one store to the pointer in the header publishes the copy.  The
// record must be complete by then.  However, best fit selects the block of the record as if the old array had been
// freed already, and this block may overlap the old array.  Such a record is written to a provisional block first and
// moved after the old array has been freed.  An array with a free slot, left by a removal or a rejected record, is
// modified in place.
//
// Most records are replaced by one of the same size, so the most recently freed block is the most likely to be written
// next; the heap prefetches it into the processor's cache.
//
// State after a crash.  The kernel releases the file lock of a process that dies at any point.  Everything it had
// written remains in the file.
//  - A reader that dies never releases its snapshot: the blocks stay allocated until the file is removed.
//  - A writer that dies between two changes may leave an unreferenced new block, which is leaked.  The order of stores
//    ensures that the header never points to a freed snapshot.
//  - A writer that dies while it shifts an array in place (removal, or insertion into a free slot) or links the free
//    list leaves that step half done: one entry may occur twice and another not at all, or free bytes may be
//    missing from the free list.  The next process that walks a broken list fails a check.
//  - An insertion that allocates a new block for the array shifts nothing: the file contains either the old records or
//    the old records and the new one.  Exception: if the heap has no room for a second copy of a provisional
//    record, a crash while the record is moved leaves an entry that points to a free block.
//  - A process that dies while formatting a file leaves it without the `valid` mark, and hence unusable.
//
// None of this is repaired: the file is a cache, so remove it instead.
//
// Locking (file lock: flock plus the process mutex; treated as one lock here)
//
//   state                                            file lock   modifies
//   -----------------------------------------------  ----------  ---------------------------------------------------
//   ValuesList: construction, destruction            yes         counts; the last release frees blocks
//   ValuesList: begin, end, get, size                no          nothing
//   insert, update, remove                           yes         anything
//   getBuffer of a value being inserted or updated   yes         nothing, but the lock is held: it must not use the
//                                                                cache, which returns -9
//   getCopy, sizes                                   yes         nothing
//   initialize                                       after       header and first snapshot of a new file; `valid` of
//                                                    mapping     an unusable one
//   after a fork, in the child                       no          nothing; reinit() detaches every object
//
// Within a process, `m_storage` is accessed under the file lock only.  Assignments to it also hold the fork mutex, so a
// forked child never finds it half assigned.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelCacheFormat.h"
#include "QelCore/QelCachedItem.h"
#include "QelCore/QelFlatSortedArray.h"
#include "QelCore/QelForkableRefCounter.h"

namespace Qel {

/// A store of variable-length records by key, shared by several processes through one mapped file.
///
/// `ItemID` is the key: trivially copyable, ordered by std::less.  `ItemValue` is the fixed head of a record: it
/// derives from QelCachedItem, is copied bytewise, and its `length()` returns the size of the whole record in bytes.
/// `Allocator` is the heap at the start of the file.  The algorithms are in QelCacheLogicImpl.h, which the source file
/// that instantiates the template includes.
///
/// Objects are owned through boost::intrusive_ptr.  All operations are thread-safe, except `initialize` and `reinit`.
template <class ItemID, class ItemValue, class Allocator>
class QEL_EXPORT QelCacheLogic : public virtual QelForkableRefCounter {
public:
    /// A mapping of the file, shared by the cache and its readers.
    class Storage : public QelRefCounter, public Allocator::Storage {
    public:
        using Allocator::Storage::Storage;
    };
    using StoragePtr = boost::intrusive_ptr<Storage>;

    using traits_type = typename Allocator::traits_type;
    template <class T> using pointer = typename traits_type::template pointer<T>;
    using ValueSet = QelFlatSortedArray<ItemID, pointer<ItemValue>, std::less<ItemID>, traits_type>;
    /// An entry of the array: a key and a pointer to its record.
    using record_t = typename ValueSet::record_t;

    /// A state of the cache, in a separate block; immutable while a reader holds it.
    struct Snapshot {
        Snapshot() = default;
        Snapshot(const Snapshot&) = delete;
        Snapshot& operator=(const Snapshot& other) {
            values = other.values;
            refCount = other.refCount;
            return *this;
        }

        /// Whether a reader holds a reference.
        [[nodiscard]] bool isAcquired() const noexcept { return refCount.getRefCount() > 1; }

        /// Like assignment, with one record inserted at `index`.
        void assignInserting(const Snapshot& other, std::size_t index, const ItemID& id, ItemValue* item) {
            values.assignInserting(other.values, index, id, item);
            refCount = other.refCount;
        }

        [[nodiscard]] unsigned getUsedMemorySize() const noexcept { return values.getUsedMemorySize() + countSize; }
        [[nodiscard]] unsigned getNextMemorySize() const noexcept { return values.getNextMemorySize() + countSize; }
        void adjustSelf(unsigned blockBytes) noexcept { values.adjustSelf(blockBytes - countSize); }

        /// offset 0: one reference for the header if this is the current snapshot, plus one per reader; guarded by the
        /// file lock
        QelCachedItemRefCounterBase<int> refCount;
        /// offset 4: the array; changed under the file lock, and only while `refCount` is 1
        ValueSet values;

    private:
        static constexpr unsigned countSize = sizeof(refCount);
    };

    /// The header at offset 0 of the file; the heap blocks follow it.  `heap`, `snapshot` and `valid` change under the
    /// file lock, except that `initialize` clears `valid` if it cannot lock the file; the other fields are written
    /// once, when the file is formatted.
    struct CacheHeader {
        /// Formats a file of `size` bytes: a heap that contains one snapshot without records.
        explicit CacheHeader(unsigned size);

        /// Returns 0, or the code of the first field that does not match, checked in the order `valid`, `headerBytes`,
        /// `keyBytes`, `magic`, `revision`, `valueBytes`.
        [[nodiscard]] int validate() const noexcept;

        Allocator heap;                ///< offset 0: header of the heap
        pointer<Snapshot> snapshot;    ///< offset 20: the current snapshot
        typename Allocator::Lock lock; ///< offset 24: placeholder for the lock, always 0
        std::uint32_t magic;           ///< offset 28: CacheFormat::magic
        std::uint32_t headerBytes;     ///< offset 32: size of this header
        std::uint32_t keyBytes;        ///< offset 36: size of a key
        std::uint32_t revision;        ///< offset 40: CacheFormat::revision
        std::uint32_t valueBytes;      ///< offset 44: declared size of a record
        std::uint32_t generation;      ///< offset 48: CacheFormat::firstGeneration; never read
        std::uint32_t valid;           ///< offset 52: 1; 0 marks the file as unusable
    };

    class ValuesList;
    using ValuesListPtr = boost::intrusive_ptr<ValuesList>;

    /// Stores the arguments and opens nothing.  `id` is the path of the file, `maxItemSize` the maximum record size in
    /// bytes, `maxLists` the maximum number of live lists, `maxStorageSize` the maximum file size in bytes,
    /// clamped to 2 GiB - 1 because relative pointers in the file cannot span more.
    QelCacheLogic(const std::string& id, unsigned maxItemSize, unsigned maxLists, unsigned maxStorageSize);
    ~QelCacheLogic() override;

    /// Returns a cache attached to the file `id`, or null.  With `isFirst` the file must be usable.  Otherwise a file
    /// that `initialize` rejects is marked as unusable, removed and created again.  `flag` is passed to `initialize`.
    [[nodiscard]] static boost::intrusive_ptr<QelCacheLogic> createInstance(const std::string& id, bool isFirst,
                                                                            bool flag, unsigned maxItemSize,
                                                                            unsigned maxLists, unsigned maxStorageSize);

    /// Attaches to the file, which is created and formatted if necessary.  The first argument is ignored.  With
    /// `invalidate`, or if it cannot be locked, a rejected file is marked as unusable for all processes.  Returns a
    /// QelCacheResult.
    [[nodiscard]] int initialize(bool, bool invalidate);

    /// Inserts a new record, or replaces an existing one.  `value.getBuffer(const void** bytes, unsigned& length, const
    /// void* old)` supplies the bytes of the record; `old` is the record to be replaced, or null.  The length must be
    /// at least the declared size of a record, and getBuffer must not use this cache.  Returns a QelCacheResult.
    template <class Real> [[nodiscard]] int insert(const ItemID& id, const Real& value) {
        return insertItem(id, ItemSource(value));
    }
    template <class Real> [[nodiscard]] int update(const ItemID& id, const Real& value) {
        return updateItem(id, ItemSource(value));
    }
    /// Removes a record.  Returns a QelCacheResult.
    [[nodiscard]] int remove(const ItemID& id);

    /// Returns a private copy of a record, or null.
    [[nodiscard]] boost::shared_ptr<ItemValue> getCopy(const ItemID& id);

    /// Returns a new list of the current state; null if too many lists are alive or no snapshot can be acquired.
    [[nodiscard]] ValuesListPtr getList() { return getList<ValuesListPtr>(); }
    /// Returns a list of a class derived from ValuesList, under the same conditions; `T` is an intrusive_ptr to the
    /// class.
    template <class T> [[nodiscard]] T getList() {
        if (!isAccessible() || m_activeLists >= m_maxLists)
            return nullptr;
        T list(new typename T::element_type(boost::intrusive_ptr<QelCacheLogic>(this)));
        if (!list->isAccessible())
            list.reset();
        return list;
    }

    /// Detaches from the file without modifying it.  For the child of a fork.  Returns 0.
    int reinit() override;

    [[nodiscard]] bool isAccessible() const noexcept { return m_header != nullptr; }
    /// Path of the file.
    [[nodiscard]] const std::string& getID() const noexcept { return m_id; }
    /// Allocated bytes of the file, including the file header and block headers; 0 if not attached or if the lock
    /// fails.
    [[nodiscard]] unsigned getTotalAllocatedSize();
    /// Size in bytes of a compact file with the current state; 0 if not attached or if the lock fails.
    [[nodiscard]] unsigned getAchiveableSize();

private:
    enum eSnapshotHint { snapshotForInsert = 0, snapshotForUpdate = 1, snapshotForRemove = 2 };

    /// Type-erased reference to a value with a `getBuffer` member function.
    class ItemSource {
    public:
        template <class Real>
        explicit ItemSource(const Real& value)
            : m_value(&value),
              m_getBuffer([](const void* self, const void** buffer, unsigned& length, const void* old) {
                  static_cast<void>(static_cast<const Real*>(self)->getBuffer(buffer, length, old));
              }) {}

        void getBuffer(const void** buffer, unsigned& length, const void* old) const {
            m_getBuffer(m_value, buffer, length, old);
        }

    private:
        const void* m_value;
        void (*m_getBuffer)(const void*, const void**, unsigned&, const void*);
    };

    /// Scoped guard of the file lock.  Acquiring it may fail, so check isLocked().
    class storageLockGuard_t {
    public:
        explicit storageLockGuard_t(QelCacheLogic& cache) : m_cache(cache), m_result(cache.lock()) {}
        storageLockGuard_t(const storageLockGuard_t&) = delete;
        storageLockGuard_t& operator=(const storageLockGuard_t&) = delete;
        ~storageLockGuard_t() {
            if (isLocked())
                m_cache.unlock();
        }
        [[nodiscard]] bool isLocked() const noexcept { return m_result == 0; }

    private:
        QelCacheLogic& m_cache;
        int m_result;
    };

    /// The bytes that a source returned.
    struct ItemBytes {
        const void* data = nullptr;
        unsigned length = 0;
    };

    /// Result of storeItem(); `record` is null unless `result` is cacheSuccess.
    struct NewItem {
        int result;
        ItemValue* record;
    };

    /// Result of placeBesideArray(): a block for a record that is inserted while the array is copied.
    struct Placement {
        ItemValue* record;  ///< null if there is no room
        bool isProvisional; ///< the final block of the record overlaps the old array
    };

    template <class Change> int changeItem(const ItemID& id, eSnapshotHint hint, const Change& change);
    int insertItem(const ItemID& id, const ItemSource& source);
    int insertIntoSlot(const ItemID& id, std::size_t index, const ItemBytes& item);
    int insertIntoCopy(const ItemID& id, std::size_t index, const ItemSource& source);
    int updateItem(const ItemID& id, const ItemSource& source);
    int replaceItem(std::size_t index, const ItemSource& source);
    ItemBytes readItem(const ItemSource& source, const ItemValue* old);
    [[nodiscard]] bool isAcceptable(const ItemBytes& item) const noexcept;
    [[nodiscard]] int checkItem(const ItemBytes& item) const;
    NewItem storeItem(const ItemBytes& item);
    static void writeItem(ItemValue* record, const ItemBytes& item);
    Placement placeBesideArray(unsigned length);
    void settle(record_t& entry, const ItemBytes& item);

    int lock();
    void unlock();
    int formatOrValidate(bool invalidate);
    void replaceStorage(StoragePtr storage);
    int detach(int result);
    [[nodiscard]] int refuse(bool invalidate, int result) const;

    // Require the file lock.
    int unsafe_checkSize();
    template <class T> T* unsafe_allocate(unsigned bytes);
    bool unsafe_extend(unsigned bytes);
    template <class T> void unsafe_deallocate(T* data);
    /// Written under the file lock only, so a relaxed load and store replace an atomic read-modify-write.
    void countLists(int change) noexcept {
        m_activeLists.store(m_activeLists.load(std::memory_order_relaxed) + static_cast<unsigned>(change),
                            std::memory_order_relaxed);
    }
    [[nodiscard]] Snapshot* acquireSnapshot(StoragePtr& storage);
    void releaseSnapshot(Snapshot* snapshot);
    void releaseItem(ItemValue* item);
    [[nodiscard]] Snapshot* getWritableSnapshot(eSnapshotHint hint);
    [[nodiscard]] static bool isWritable(const Snapshot& snapshot, eSnapshotHint hint);
    [[nodiscard]] static unsigned bytesOfCopy(const Snapshot& snapshot, eSnapshotHint hint);
    void makeCurrent(Snapshot* copy);
    [[nodiscard]] bool isSnapshotMemoryAccessible(Snapshot* snapshot) const;
    [[nodiscard]] Snapshot* currentSnapshot() const;
    [[nodiscard]] CacheHeader* header() const noexcept { return m_header.load(std::memory_order_relaxed); }

    /// Converts `data`, an address in the mapping based at `base`, to the current mapping.
    template <class T> [[nodiscard]] T* rebased(T* data, const void* base) const;

    std::atomic<CacheHeader*> m_header{nullptr}; ///< in the current mapping; null: not attached
    StoragePtr m_storage;                        ///< the current mapping; changes under the file lock
    StoragePtr m_lockedFile;                     ///< locks the file without mapping it; not replaced while attached
    std::string m_id;
    bool m_protect = true; ///< map the heap read-only while unlocked; reset by `initialize`
    unsigned m_maxItemSize;
    unsigned m_maxLists;
    std::atomic<unsigned> m_activeLists{0}; ///< changes under the file lock
    unsigned m_maxStorageSize;
};

/// A reader's snapshot: the state of the cache when the list was created.  Reading it acquires no lock and sees no
/// later change.  A list that is not accessible is empty.
///
/// The records are in the mapping, which the list keeps alive: they are valid for the lifetime of the list and
/// read-only.  Several threads may read one list.
template <class ItemID, class ItemValue, class Allocator>
class QelCacheLogic<ItemID, ItemValue, Allocator>::ValuesList : public virtual QelForkableRefCounter {
public:
    /// Acquires the current snapshot of `cache`, which may be null.
    explicit ValuesList(boost::intrusive_ptr<QelCacheLogic> cache);
    /// Releases the snapshot.  If the lock fails, the reference remains in the file.
    ~ValuesList() override;

    [[nodiscard]] bool isAccessible() const noexcept { return m_snapshot && m_cache && m_storage; }

    /// The entries in key order; null if not accessible.
    [[nodiscard]] const record_t* begin() const noexcept { return isAccessible() ? values().begin() : nullptr; }
    [[nodiscard]] const record_t* end() const noexcept { return isAccessible() ? values().end() : nullptr; }
    [[nodiscard]] std::size_t size() const noexcept { return isAccessible() ? values().size() : 0; }

    /// Returns the record of a key, or null.
    [[nodiscard]] const ItemValue* get(const ItemID& id) const { return isAccessible() ? values().find(id) : nullptr; }

    /// Drops the snapshot without releasing it, because the reference belongs to the parent process.  Returns 0.
    int reinit() override;

private:
    [[nodiscard]] const ValueSet& values() const noexcept { return m_snapshot->values; }

    boost::intrusive_ptr<QelCacheLogic> m_cache;
    Snapshot* m_snapshot = nullptr;
    StoragePtr m_storage; ///< keeps the mapping that contains `m_snapshot`
};

} // namespace Qel
