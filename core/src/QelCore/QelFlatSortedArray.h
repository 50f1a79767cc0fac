#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>

#include "QelCommon/Debug.h"
#include "QelCore/QelFlatRecords.h"
#include "QelCore/QelStoreOrder.h"

namespace Qel {

/// A sorted map in one contiguous block of a mapped file: two counters, followed by the entries in ascending key order.
///
/// The array neither owns its memory nor grows.  It counts the free slots after its last entry.  When none is left,
/// the owner of the block allocates a larger one, constructs an array there and assigns this one to it.  Assignment
/// recomputes every self-relative pointer; a bytewise copy would not be valid.
///
/// `Key` provides `leadingBits()`: its 32 most significant bits in the order of `Compare`.  `Data` is
/// `Traits::pointer<...>`, the pointer type of the block's owner.  Pointers to values are passed and returned as raw
/// pointers; null is preserved.
template <class Key, class Data, class Compare, class Traits> class QelFlatSortedArray {
public:
    using mapped_type = typename Data::element_type;
    static_assert(std::is_same_v<Data, typename Traits::template pointer<mapped_type>>);
    static_assert(std::is_trivially_copyable_v<Key>, "keys are stored by their bytes");

    struct record_t {
        Key key;   ///< offset 0; never changed while the entry is in use
        Data data; ///< offset 16: the value, relative to the address of this field
    };

    /// Compares entries by key only.
    struct Cmp1St {
        bool operator()(const record_t& a, const record_t& b) const { return Compare()(a.key, b.key); }
        bool operator()(const record_t& a, const Key& b) const { return Compare()(a.key, b); }
        bool operator()(const Key& a, const record_t& b) const { return Compare()(a, b.key); }
    };

    /// Creates an empty array with one free slot, `m_first`.
    QelFlatSortedArray() = default;
    QelFlatSortedArray(const QelFlatSortedArray&) = delete;

    /// Copies the counters and used entries of `other`.  The block must have room for them.
    QelFlatSortedArray& operator=(const QelFlatSortedArray& other) {
        if (this == &other)
            return *this;
        m_count = other.m_count;
        m_reserved = other.m_reserved;
        QelFlatRecords::moveForward(other.begin(), begin(), m_count);
        return *this;
    }

    /// Like assignment, but inserts a new entry at `index`, as returned by `other.findIndex`.  The block must have
    /// room for one entry more than `other` uses; its free slots are not counted until adjustSelf().
    void assignInserting(const QelFlatSortedArray& other, std::size_t index, const Key& key, mapped_type* value) {
        QEL_CHECK(index <= other.m_count, sourcePath);
        record_t* place = begin() + index;
        QelFlatRecords::moveForward(other.begin(), begin(), index);
        place->key = key;
        place->data = value;
        QelFlatRecords::moveForward(other.begin() + index, place + 1, other.m_count - index);
        m_count = other.m_count + 1;
        m_reserved = 0;
    }

    [[nodiscard]] record_t* begin() noexcept { return &m_first; }
    [[nodiscard]] const record_t* begin() const noexcept { return &m_first; }
    [[nodiscard]] record_t* end() noexcept { return begin() + m_count; }
    [[nodiscard]] const record_t* end() const noexcept { return begin() + m_count; }

    [[nodiscard]] std::size_t size() const noexcept { return m_count; }
    [[nodiscard]] unsigned getReservedItemCount() const noexcept { return m_reserved; }

    /// Size in bytes without free slots, and with one free slot.
    [[nodiscard]] unsigned getUsedMemorySize() const noexcept { return fixedSize + recordSize * m_count; }
    [[nodiscard]] unsigned getNextMemorySize() const noexcept { return getUsedMemorySize() + recordSize; }

    /// Returns whether `key` is present and sets `index` to its position, or to the position where it would be
    /// inserted.
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

    /// Inserts an entry in key order and returns it.  Requires a free slot and that the key is not present.
    record_t* insert(const Key& key, mapped_type* value) {
        std::size_t index;
        static_cast<void>(findIndex(key, index));
        return insertAt(index, key, value);
    }

    /// Inserts an entry at `index`, as returned by `findIndex`, and returns it.  Requires a free slot.
    record_t* insertAt(std::size_t index, const Key& key, mapped_type* value) {
        QEL_CHECK(m_reserved != 0 && index <= m_count, sourcePath);
        record_t* place = begin() + index;
        QelFlatRecords::moveBackward(place, place + 1, m_count - index);
        place->data = value;
        place->key = key;
        // A crash between the two stores must not count a slot beyond the block.
        keepStoreOrder();
        --m_reserved;
        keepStoreOrder();
        ++m_count;
        return place;
    }

    /// Removes an entry and returns the entry that took its position, or end().  Its slot becomes free.
    record_t* remove(std::size_t index) {
        QEL_CHECK(index < m_count, sourcePath);
        record_t* place = begin() + index;
        QelFlatRecords::moveForward(place + 1, place, m_count - index - 1);
        --m_count;
        ++m_reserved;
        return place;
    }

    /// Recomputes the number of free slots for a block of `blockBytes`.
    void adjustSelf(unsigned blockBytes) noexcept { m_reserved = (blockBytes - getUsedMemorySize()) / recordSize; }

private:
    static constexpr const char* sourcePath = "core/src/QelCore/QelFlatSortedArray";
    static constexpr unsigned recordSize = sizeof(record_t);
    static constexpr unsigned fixedSize = 8;

    /// Bounds for a search: the result is in [first, last].
    struct Bounds {
        std::size_t first;
        std::size_t last;
    };

    /// Interpolation search: keys are random identifiers, so their leading 32 bits predict the index to within O(sqrt
    /// n), and a search of a large array rarely touches more than one page.  Returns bounds for lowerBound(), widened
    /// exponentially when the guess misses; if keys are not random, this at most doubles the number of steps of a
    /// binary search.
    [[nodiscard]] Bounds interpolate(const Key& key) const {
        const auto guess = static_cast<std::size_t>(std::uint64_t{key.leadingBits()} * m_count >> 32U);
        std::size_t reach = std::size_t{1} << static_cast<unsigned>(std::bit_width(m_count)) / 2;
        Bounds bounds{guess - std::min(guess, reach), std::min<std::size_t>(guess + reach, m_count)};
        while (bounds.first > 0 && !isBelow(bounds.first - 1, key)) {
            bounds.last = bounds.first - 1;
            reach *= 2;
            bounds.first = bounds.last - std::min(bounds.last, reach);
        }
        while (bounds.last < m_count && isBelow(bounds.last, key)) {
            bounds.first = bounds.last + 1;
            reach *= 2;
            bounds.last = std::min<std::size_t>(bounds.first + reach, m_count);
        }
        return bounds;
    }

    /// Index of the first entry whose key is not less than `key`.
    ///
    /// Branchless 4-ary search instead of a binary search: the outcome of a comparison is random, and a mispredicted
    /// branch would cost as much as several comparisons.  Three independent probes per step overlap their cache misses,
    /// and each step leaves a quarter of the range.
    [[nodiscard]] std::size_t lowerBound(const Key& key) const {
        const Bounds bounds = interpolate(key);
        std::size_t first = bounds.first;
        std::size_t count = bounds.last - first;
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

    std::uint32_t m_count = 0;    ///< offset 0: entries in use
    std::uint32_t m_reserved = 1; ///< offset 4: free slots after the last entry
    record_t m_first;             ///< offset 8: the first slot; the others follow contiguously

    static_assert(offsetof(record_t, key) == 0);
    static_assert(offsetof(record_t, data) == QelFlatRecords::keyBytes);
    static_assert(sizeof(record_t) == QelFlatRecords::recordBytes);
};

} // namespace Qel
