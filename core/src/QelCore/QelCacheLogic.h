#pragma once

// How the cache file is shared
//
// One file holds all records of all processes.  Writers change it under one lock, the file's.  A reader takes that lock
// twice, to acquire a snapshot and to give it back, and reads without any lock between the two, for as long as it
// likes.
//
// Why reading without a lock is harmless.  A snapshot is a block that holds a reference count and the sorted array of
// keys and record pointers.  The header points at the current one and counts as one reference; each reader is one more.
// A writer that finds the count above 1 leaves the block alone: it copies the array to a new block, points the header
// there and gives up the header's reference to the old one.  A record is never changed once it is listed: an update
// writes a new record and swaps the pointer, in an array that nobody else can see.  Each record counts the snapshots
// that list it, and its block is freed with the last of them.  So what a reader sees is old at worst, never torn and
// never freed: the only words that change in what it can reach are counts, which it doesn't read.
//
// The file grows while readers hold it.  A Storage never changes its size or its address, so the process that grows the
// file makes a second one, the others do so at their next lock, when they see that the header tells of more bytes than
// they show, and a reader keeps the one in which its snapshot was taken.  That shows the same pages, and everything
// that the snapshot lists lay within it when it was taken.  The file holds distances and no addresses, so two mappings
// disagree about nothing.  An address that was computed in one Storage is moved to the other by the distance of their
// bases (`rebased` in the algorithms), which is 0 where the file was mapped with room for its growth.
//
// How a record is inserted.  An array without a free slot is replaced by one in a new block, which a single pass builds
// with the new record in its place, and then one store makes it current: the pointer in the header.  The record has to
// be complete by then, but its block is the one that is free once the old array is, and may share memory with that.
// Such a record is written to another block first, and moved when the old array has been freed.  An array with a free
// slot, which a removal or a refused record leaves, is changed where it is.
//
// A record is most often replaced by one of its own size, so that the block freed last is the likeliest to be written
// next.
//
// What a crash leaves.  The kernel drops the lock of a process that dies, whatever it was doing, and what it had
// written stays in the file.
//  - A reader that dies never gives its snapshot back: the blocks stay allocated until the file is removed.
//  - A writer that dies between two changes leaves a new block to which nobody refers, and its bytes are lost.  In the
//    order of its steps the header never points at a freed snapshot.
//  - A writer that dies while it shifts an array in place (a removal, or an insertion into a free slot) or links the
//    free list leaves that half done: a record may be listed twice and another one not at all, or free bytes be missing
//    from the list.  The next process that walks a broken list ends at a check.
//  - An insertion that needs a new block for the array shifts nothing and leaves all records or one more, unless the
//    heap is so full that there is no room to put the record aside.
//  - A process that dies while it formats a file leaves it without the mark `valid`, and so unusable.
// Nothing repairs any of this: the file is a cache, and removing it is the repair.
//
// What is held when (file lock: flock and the mutex of the process; both are one lock here)
//
//   state                                            file lock   changes
//   -----------------------------------------------  ----------  ---------------------------------------------------
//   ValuesList: constructed, destroyed               yes         counts; the last release frees blocks
//   ValuesList: begin, end, get, size                no          nothing
//   insert, update, remove                           yes         anything
//   getBuffer of a value being inserted or updated   yes         nothing, but the lock stays taken: it must not use
//                                                                the cache, which refuses it (-9)
//   getCopy, sizes                                   yes         nothing
//   initialize                                       from the    header and first snapshot of a new file; `valid` of
//                                                    mapping on  an unusable one
//   after a fork, in the child                       no          nothing; every object is detached by reinit()
//
// Within a process `m_storage` is read and written under the file lock only.  It is written under the mutex that is
// free in every forked child as well, so that none finds it half written.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "QelCore/QelCacheFormat.h"
#include "QelCore/QelCachedItem.h"
#include "QelCore/QelFlatSortedArray.h"
#include "QelCore/QelForkableRefCounter.h"

namespace Qel {

/// A store of records of varying length by key, which several processes share through one mapped file.
///
/// `ItemID` is the key: trivially copyable, ordered by std::less.  `ItemValue` is the fixed head of a record: it
/// derives from QelCachedItem, is copied as bytes, and `length()` tells the bytes of the whole record.  `Allocator` is
/// the heap at the file's start.  The algorithms stand in QelCacheLogicImpl.h, for whoever instantiates the template.
///
/// Objects are owned through boost::intrusive_ptr.  All operations may be called from several threads at once, except
/// for `initialize` and `reinit`.
template <class ItemID, class ItemValue, class Allocator> class QelCacheLogic : public virtual QelForkableRefCounter {
public:
    /// A mapping of the file that is shared by whoever reads in it.
    class Storage : public QelRefCounter, public Allocator::Storage {
    public:
        using Allocator::Storage::Storage;
    };
    using StoragePtr = boost::intrusive_ptr<Storage>;

    using traits_type = typename Allocator::traits_type;
    template <class T> using pointer = typename traits_type::template pointer<T>;
    using ValueSet = QelFlatSortedArray<ItemID, pointer<ItemValue>, std::less<ItemID>, traits_type>;
    using record_t = typename ValueSet::record_t;

    /// A state of the cache, in a block of its own.
    struct Snapshot {
        Snapshot() = default;
        Snapshot(const Snapshot&) = delete;
        Snapshot& operator=(const Snapshot& other) {
            values = other.values;
            refCount = other.refCount;
            return *this;
        }

        /// Whether somebody besides the header holds it.
        [[nodiscard]] bool isAcquired() const noexcept { return refCount.getRefCount() > 1; }

        /// As assignment, with one more record.
        void assignInserting(const Snapshot& other, std::size_t index, const ItemID& id, ItemValue* item) {
            values.assignInserting(other.values, index, id, item);
            refCount = other.refCount;
        }

        [[nodiscard]] unsigned getUsedMemorySize() const noexcept { return values.getUsedMemorySize() + countSize; }
        [[nodiscard]] unsigned getNextMemorySize() const noexcept { return values.getNextMemorySize() + countSize; }
        void adjustSelf(unsigned blockBytes) noexcept { values.adjustSelf(blockBytes - countSize); }

        /// offset 0: one for the header if this is the current snapshot, and one for each reader; guarded by the file
        /// lock
        QelCachedItemRefCounterBase<int> refCount;
        /// offset 4: keys and records; changed under the file lock, and only while `refCount` is 1
        ValueSet values;

    private:
        static constexpr unsigned countSize = sizeof(refCount);
    };

    /// The file from offset 0 on.  Everything behind it is blocks of the heap.  `heap`, `snapshot` and `valid` change
    /// under the file lock; the other fields are written once, when the file is formatted.
    struct CacheHeader {
        /// Formats a file of `size` bytes: an empty heap with one snapshot of no records.
        explicit CacheHeader(unsigned size);

        /// 0, or the code of the first of these that is wrong: `valid`, `headerBytes`, `keyBytes`, `magic`, `revision`,
        /// `valueBytes`.
        [[nodiscard]] int validate() const noexcept;

        Allocator heap;                ///< offset 0: the heap's own header
        pointer<Snapshot> snapshot;    ///< offset 20: the current snapshot
        typename Allocator::Lock lock; ///< offset 24: place of the lock, which keeps nothing here
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

    /// Keeps the arguments; nothing is opened.  `id` is the name of the file, `maxItemSize` the bytes of the largest
    /// record accepted, `maxLists` the number of lists that may live at once, `maxStorageSize` the bytes that the file
    /// may reach; more than 2 GiB - 1 is of no use, as pointers in the file tell no larger distances.
    QelCacheLogic(const std::string& id, unsigned maxItemSize, unsigned maxLists, unsigned maxStorageSize);
    ~QelCacheLogic() override;

    /// A cache attached to the file `id`, or null.  With `isFirst` the file has to be usable.  Without, an unusable
    /// file is marked as such, removed, and made anew.  `flag` goes to `initialize`.
    [[nodiscard]] static boost::intrusive_ptr<QelCacheLogic> createInstance(const std::string& id, bool isFirst,
                                                                            bool flag, unsigned maxItemSize,
                                                                            unsigned maxLists, unsigned maxStorageSize);

    /// Attaches to the file, which is created and formatted if it never was.  The first argument has no effect.  With
    /// `invalidate` a file that can't be used is marked so for all.  A QelCacheResult.
    [[nodiscard]] int initialize(bool, bool invalidate);

    /// Adds a record, or replaces one, by the bytes that `value.getBuffer(const void** bytes, unsigned& length, const
    /// void* old)` tells; `old` is the record to be replaced, or null.  It has to tell at least the declared size of a
    /// record, and must not use this cache.  A QelCacheResult.
    template <class Real> [[nodiscard]] int insert(const ItemID& id, const Real& value) {
        return insertItem(id, ItemSource(value));
    }
    template <class Real> [[nodiscard]] int update(const ItemID& id, const Real& value) {
        return updateItem(id, ItemSource(value));
    }
    /// Removes a record.  A QelCacheResult.
    [[nodiscard]] int remove(const ItemID& id);

    /// A private copy of a record, or null.
    [[nodiscard]] boost::shared_ptr<ItemValue> getCopy(const ItemID& id);

    /// A new list of the current state; null when too many are alive or no snapshot can be had.
    [[nodiscard]] ValuesListPtr getList() { return getList<ValuesListPtr>(); }
    /// The same, of a class derived from ValuesList; `T` is an intrusive_ptr to it.
    template <class T> [[nodiscard]] T getList() {
        if (!isAccessible() || m_activeLists >= m_maxLists)
            return nullptr;
        T list(new typename T::element_type(boost::intrusive_ptr<QelCacheLogic>(this)));
        if (!list->isAccessible())
            list.reset();
        return list;
    }

    /// Detaches without a trace in the file.
    int reinit() override;

    [[nodiscard]] bool isAccessible() const noexcept { return m_header != nullptr; }
    /// The name of the file.
    [[nodiscard]] const std::string& getID() const noexcept { return m_id; }
    /// Bytes in use in the file, with header and heads of blocks; 0 when the cache isn't attached or can't be locked.
    [[nodiscard]] unsigned getTotalAllocatedSize();
    /// Bytes that a compact file would need for the current state; 0 as above.
    [[nodiscard]] unsigned getAchiveableSize();

private:
    enum eSnapshotHint { snapshotForInsert = 0, snapshotForUpdate = 1, snapshotForRemove = 2 };

    /// A value of any class that has `getBuffer`.
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

    /// Holds the file lock, if it could be taken.
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

    /// What a source returned.
    struct ItemBytes {
        const void* data = nullptr;
        unsigned length = 0;
    };

    /// A record that a change is about to put into the array.
    struct NewItem {
        int result;
        ItemValue* record;
    };

    /// A block for the record of an insertion into a copy of the array.
    struct Placement {
        ItemValue* record;  ///< null if there is no room
        bool isProvisional; ///< the record's own block shares memory with the old array
    };

    int insertItem(const ItemID& id, const ItemSource& source);
    int insertIntoSlot(const ItemID& id, std::size_t index, const ItemBytes& item);
    int insertIntoCopy(const ItemID& id, std::size_t index, const ItemSource& source);
    int updateItem(const ItemID& id, const ItemSource& source);
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

    // With the file lock held.
    int unsafe_checkSize();
    template <class T> T* unsafe_allocate(unsigned bytes);
    bool unsafe_extend(unsigned bytes);
    template <class T> void unsafe_deallocate(T* data);
    /// No other thread changes the number meanwhile, so it needn't be changed in one step, which costs more.
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

    /// `data`, an address in the mapping that began at `base`, in the current one.
    template <class T> [[nodiscard]] T* rebased(T* data, const void* base) const;

    std::atomic<CacheHeader*> m_header{nullptr}; ///< in the current mapping; null: not attached
    StoragePtr m_storage;                        ///< the current mapping; changes under the file lock
    StoragePtr m_lockedFile; ///< the file, not mapped, for its lock: one from attaching to detaching
    std::string m_id;
    bool m_protect = true; ///< the heap is read-only outside the lock; from construction until `initialize` only
    unsigned m_maxItemSize;
    unsigned m_maxLists;
    std::atomic<unsigned> m_activeLists{0}; ///< changes under the file lock
    unsigned m_maxStorageSize;
};

/// A reader's snapshot: the state of the cache when the list was made.  Reading it takes no lock and sees no change
/// that came later.  A list that isn't accessible is empty.
///
/// Records lie in the mapping, which the list keeps: they are valid as long as it lives, and are not written to.  One
/// list may be read by several threads.
template <class ItemID, class ItemValue, class Allocator>
class QelCacheLogic<ItemID, ItemValue, Allocator>::ValuesList : public virtual QelForkableRefCounter {
public:
    /// Acquires the current snapshot of `cache`, which may be null.
    explicit ValuesList(boost::intrusive_ptr<QelCacheLogic> cache);
    /// Gives the snapshot back.  If the lock can't be taken for that, its reference stays in the file.
    ~ValuesList() override;

    [[nodiscard]] bool isAccessible() const noexcept { return m_snapshot && m_cache && m_storage; }

    /// The records in the order of their keys; null when not accessible.
    [[nodiscard]] const record_t* begin() const noexcept { return isAccessible() ? values().begin() : nullptr; }
    [[nodiscard]] const record_t* end() const noexcept { return isAccessible() ? values().end() : nullptr; }
    [[nodiscard]] std::size_t size() const noexcept { return isAccessible() ? values().size() : 0; }

    /// The record of a key, or null.
    [[nodiscard]] const ItemValue* get(const ItemID& id) const { return isAccessible() ? values().find(id) : nullptr; }

    /// Forgets the snapshot, so that nothing is given back: the reference belongs to the parent process.
    int reinit() override;

private:
    [[nodiscard]] const ValueSet& values() const noexcept { return m_snapshot->values; }

    boost::intrusive_ptr<QelCacheLogic> m_cache;
    Snapshot* m_snapshot = nullptr;
    StoragePtr m_storage; ///< pins the mapping in which `m_snapshot` points
};

} // namespace Qel
