#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>

#include "QelCommon/Debug.h"
#include "QelCore/QelRecordTable.h"
#include "QelCore/QelStoreOrder.h"

namespace Qel {

/// A sorted map in one contiguous piece of a mapped file: two counters, then the records in ascending order of their
/// keys.
///
/// The array doesn't own its memory and doesn't grow.  It knows how many free slots lie behind its last record; the
/// owner of the memory block makes a larger block when there are none left, and assigns the array to one that it
/// constructed there.  That assignment computes every pointer anew, so the bytes alone are no copy.
///
/// `Key` tells its 32 most significant bits in the order of `Compare`, as `leadingBits()`.  `Data` is
/// `Traits::pointer<...>`, the pointer type of the block's owner.  A pointer to a value is handed in and out
/// as a raw pointer, null for null.
template <class Key, class Data, class Compare, class Traits> class QelFlatSortedArray {
public:
    using mapped_type = typename Data::element_type;
    static_assert(std::is_same_v<Data, typename Traits::template pointer<mapped_type>>);
    static_assert(std::is_trivially_copyable_v<Key>, "keys are stored by their bytes");

    struct record_t {
        Key key;   ///< offset 0; never changed while the record is in use
        Data data; ///< offset 16: the value, relative to this field's own address
    };

    /// Orders records by their keys alone.
    struct Cmp1St {
        bool operator()(const record_t& a, const record_t& b) const { return Compare()(a.key, b.key); }
        bool operator()(const record_t& a, const Key& b) const { return Compare()(a.key, b); }
        bool operator()(const Key& a, const record_t& b) const { return Compare()(a, b.key); }
    };

    /// Empty, with the one declared slot free.
    QelFlatSortedArray() = default;
    QelFlatSortedArray(const QelFlatSortedArray&) = delete;

    /// Takes over the counters and the used records of `other`.  The block has room for them.
    QelFlatSortedArray& operator=(const QelFlatSortedArray& other) {
        if (this == &other)
            return *this;
        m_count = other.m_count;
        m_reserved = other.m_reserved;
        QelRecordTable::moveUpwards(other.begin(), begin(), m_count);
        return *this;
    }

    /// As assignment, with a new record at `index`, the place that `findIndex` of `other` returned.  The block has room
    /// for one record more than `other` uses; its free slots are not counted yet.
    void assignInserting(const QelFlatSortedArray& other, std::size_t index, const Key& key, mapped_type* value) {
        QEL_CHECK(index <= other.m_count, sourcePath);
        record_t* place = begin() + index;
        QelRecordTable::moveUpwards(other.begin(), begin(), index);
        place->key = key;
        place->data = value;
        QelRecordTable::moveUpwards(other.begin() + index, place + 1, other.m_count - index);
        m_count = other.m_count + 1;
        m_reserved = 0;
    }

    [[nodiscard]] record_t* begin() noexcept { return &m_first; }
    [[nodiscard]] const record_t* begin() const noexcept { return &m_first; }
    [[nodiscard]] record_t* end() noexcept { return begin() + m_count; }
    [[nodiscard]] const record_t* end() const noexcept { return begin() + m_count; }

    [[nodiscard]] std::size_t size() const noexcept { return m_count; }
    [[nodiscard]] unsigned getReservedItemCount() const noexcept { return m_reserved; }

    /// Bytes of the array without its free slots, and with one free slot.
    [[nodiscard]] unsigned getUsedMemorySize() const noexcept { return fixedSize + recordSize * m_count; }
    [[nodiscard]] unsigned getNextMemorySize() const noexcept { return getUsedMemorySize() + recordSize; }

    /// Whether `key` is present; `index` is then its place, and otherwise the place where it would be inserted.
    [[nodiscard]] bool findIndex(const Key& key, std::size_t& index) const {
        index = lowerBound(key);
        if (index == m_count || Cmp1St()(key, begin()[index]))
            return false;
        QEL_CHECK(!isBelow(index, key), sourcePath);
        return true;
    }

    /// The value of `key`, or null.
    [[nodiscard]] mapped_type* find(const Key& key) const {
        std::size_t index;
        return findIndex(key, index) ? begin()[index].data.get() : nullptr;
    }

    [[nodiscard]] record_t& at(std::size_t index) {
        QEL_CHECK(index < m_count, sourcePath);
        return begin()[index];
    }

    void update(std::size_t index, mapped_type* value) { at(index).data = value; }

    /// Puts a new record where it belongs and gives it back.  A slot is free and the key isn't present: the caller has
    /// seen to both.
    record_t* insert(const Key& key, mapped_type* value) {
        std::size_t index;
        static_cast<void>(findIndex(key, index));
        return insertAt(index, key, value);
    }

    /// The same at the place that `findIndex` told.
    record_t* insertAt(std::size_t index, const Key& key, mapped_type* value) {
        QEL_CHECK(m_reserved != 0 && index <= m_count, sourcePath);
        record_t* place = begin() + index;
        QelRecordTable::moveDownwards(place, place + 1, m_count - index);
        place->data = value;
        place->key = key;
        // In this order, so that a crash between the two leaves no slot beyond the block.
        keepStoreOrder();
        --m_reserved;
        keepStoreOrder();
        ++m_count;
        return place;
    }

    /// Removes a record and gives back the one that took its place, or the end.  The slot is free afterwards.
    record_t* remove(std::size_t index) {
        QEL_CHECK(index < m_count, sourcePath);
        record_t* place = begin() + index;
        QelRecordTable::moveUpwards(place + 1, place, m_count - index - 1);
        --m_count;
        ++m_reserved;
        return place;
    }

    /// Counts the free slots anew, once the array lies in a block of `blockBytes`.
    void adjustSelf(unsigned blockBytes) noexcept { m_reserved = (blockBytes - getUsedMemorySize()) / recordSize; }

private:
    static constexpr const char* sourcePath = "core/src/QelCore/QelFlatSortedArray";
    static constexpr unsigned recordSize = sizeof(record_t);
    static constexpr unsigned fixedSize = 8;

    /// Places in the array, the first and the last of several.
    struct Places {
        std::size_t first;
        std::size_t last;
    };

    /// Where the first record that isn't below `key` is to be looked for.
    ///
    /// Keys are identifiers made at random.  Where one stands is told by its leading bits, but for about the square
    /// root of the number of records, and so a search seldom reads from more than one page of a large array.  Keys that
    /// are anything but random are found as well, in twice the steps.
    [[nodiscard]] Places placesNear(const Key& key) const {
        const auto guess = static_cast<std::size_t>(std::uint64_t{key.leadingBits()} * m_count >> 32U);
        std::size_t reach = std::size_t{1} << static_cast<unsigned>(std::bit_width(m_count)) / 2;
        Places places{guess - std::min(guess, reach), std::min<std::size_t>(guess + reach, m_count)};
        while (places.first > 0 && !isBelow(places.first - 1, key)) {
            places.last = places.first - 1;
            reach *= 2;
            places.first = places.last - std::min(places.last, reach);
        }
        while (places.last < m_count && isBelow(places.last, key)) {
            places.first = places.last + 1;
            reach *= 2;
            places.last = std::min<std::size_t>(places.first + reach, m_count);
        }
        return places;
    }

    /// The place of the first record whose key isn't below `key`.  Which part is left is a matter of arithmetic, not of
    /// a branch: the outcome of a comparison is random, and each branch mispredicted costs as much as several
    /// comparisons.  Memory is what takes time, and three keys come as fast as one, so each step leaves a quarter.
    [[nodiscard]] std::size_t lowerBound(const Key& key) const {
        const Places near = placesNear(key);
        std::size_t first = near.first;
        std::size_t count = near.last - first;
        while (count >= 4) {
            const std::size_t quarter = count / 4;
            const auto below = [&](std::size_t i) { return std::size_t{isBelow(first + i * quarter - 1, key)}; };
            first += (below(1) + below(2) + below(3)) * quarter;
            count -= 3 * quarter;
        }
        for (; count > 0; --count)
            first += std::size_t{isBelow(first, key)};
        return first;
    }

    [[nodiscard]] bool isBelow(std::size_t index, const Key& key) const { return Cmp1St()(begin()[index], key); }

    std::uint32_t m_count = 0;    ///< offset 0: records in use
    std::uint32_t m_reserved = 1; ///< offset 4: free slots behind the last record
    record_t m_first;             ///< offset 8: the first of all slots; the others follow it

    static_assert(offsetof(record_t, key) == 0);
    static_assert(offsetof(record_t, data) == QelRecordTable::keyBytes);
    static_assert(sizeof(record_t) == QelRecordTable::recordBytes);
};

} // namespace Qel
