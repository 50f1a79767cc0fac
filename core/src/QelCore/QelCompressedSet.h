#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <type_traits>

#include <boost/sort/pdqsort/pdqsort.hpp>

#include "QelCommon/Debug.h"

namespace Qel {

/// The closed interval [start, end].
template <class T> struct range {
    T start;
    T end;

    friend bool operator==(const range&, const range&) = default;
};

/// True if `a` ends before `b` starts.
template <class T> constexpr bool searchStart(const range<T>& a, const range<T>& b) {
    return a.end < b.start;
}
/// True if `a` ends before `b` does.
template <class T> constexpr bool searchEnd(const range<T>& a, const range<T>& b) {
    return a.end < b.end;
}

/// A set of unsigned numbers, stored as the minimal sequence of ranges: ascending, with at least one missing value
/// between neighbours.  The set cannot contain the smallest and the largest number of the type.
///
///     compressed_set<unsigned, std::vector, std::allocator<range<unsigned>>> set;
///     set.insert({1, 2});
///     set.insert({3, 4});      // {[1,4]}
///
/// `cont_t` is a sequence with random access.  There is no removal; build another set instead.
template <class T, template <class, class> class cont_t, class alloc_t> class compressed_set {
public:
    static_assert(std::is_unsigned_v<T>, "the bounds of a range are widened in unsigned arithmetic");

    using value_type = range<T>;
    using container_type = cont_t<range<T>, alloc_t>;
    using const_iterator = typename container_type::const_iterator;

    compressed_set() = default;
    explicit compressed_set(const alloc_t& allocator) : m_ranges(allocator) {}

    /// The ranges. insert() invalidates the iterators.
    [[nodiscard]] const_iterator begin() const { return m_ranges.begin(); }
    [[nodiscard]] const_iterator end() const { return m_ranges.end(); }
    [[nodiscard]] bool empty() const { return m_ranges.empty(); }
    /// Number of ranges.
    [[nodiscard]] std::size_t size() const { return m_ranges.size(); }

    /// Adds all values of a range, or nothing if `end` is `start - 1`.  The process is terminated if the range ends
    /// earlier or contains the smallest or the largest number of the type.
    ///
    /// Costs a binary search, plus moving the ranges after a new one.
    void insert(const range<T>& added);

    /// Adds many ranges, equivalent to inserting them one by one.  Sorts them first, which is much faster unless they
    /// are already in ascending order.  Shrinks the container to its size.
    template <std::input_iterator Iterator> void insert(Iterator first, Iterator last);

    friend bool operator==(const compressed_set&, const compressed_set&) = default;

private:
    /// The range extended by one value at each end: a range that touches `one` overlaps the result.  Wraps at the
    /// limits of the type.
    static range<T> widened(const range<T>& one) {
        return {static_cast<T>(one.start - 1), static_cast<T>(one.end + 1)};
    }
    static bool isEmpty(const range<T>& one) { return one.end < one.start; }
    /// If `next` starts in `one` or directly after it, extends `one` to the end of `next` and returns true.
    static bool extend(range<T>& one, const range<T>& next) {
        if (next.start < one.start || one.end < next.start - 1)
            return false;
        one.end = std::max(one.end, next.end);
        return true;
    }
    struct StartsEarlier { // a function object, because the sort cannot inline a function pointer
        bool operator()(const range<T>& a, const range<T>& b) const { return a.start < b.start; }
    };

    /// Inserts a range that starts before the last one.
    void insertBeforeLast(const range<T>& added, const range<T>& wide);

    container_type m_ranges;
};

template <class T, template <class, class> class cont_t, class alloc_t>
void compressed_set<T, cont_t, alloc_t>::insert(const range<T>& added) {
    const range<T> wide = widened(added);
    QEL_CHECK_AT(wide.start < wide.end, "core/src/QelCore/QelContainers", 570);
    if (isEmpty(added))
        return;
    if (m_ranges.empty() || m_ranges.back().end < wide.start)
        m_ranges.push_back(added);
    else if (wide.end < m_ranges.front().start)
        m_ranges.insert(m_ranges.begin(), added);
    else if (!extend(m_ranges.back(), added))
        insertBeforeLast(added, wide);
}

template <class T, template <class, class> class cont_t, class alloc_t>
void compressed_set<T, cont_t, alloc_t>::insertBeforeLast(const range<T>& added, const range<T>& wide) {
    // The ranges that overlap or touch `added`.
    const auto [first, last] = std::equal_range(m_ranges.begin(), m_ranges.end(), wide, searchStart<T>);
    if (first == last) {
        m_ranges.insert(first, added);
        return;
    }
    first->start = std::min(first->start, added.start);
    first->end = std::max(std::prev(last)->end, added.end);
    m_ranges.erase(std::next(first), last);
}

template <class T, template <class, class> class cont_t, class alloc_t>
template <std::input_iterator Iterator>
void compressed_set<T, cont_t, alloc_t>::insert(Iterator first, Iterator last) {
    container_type all(m_ranges);
    const auto oldSize = all.size();
    for (; first != last; ++first) {
        const range<T>& added = *first;
        const range<T> wide = widened(added);
        QEL_CHECK_AT(wide.start < wide.end, "core/src/QelCore/QelContainers", 570);
        if (!isEmpty(added) && !(all.size() > oldSize && extend(all.back(), added)))
            all.push_back(added);
    }
    if (all.size() == oldSize)
        return;

    const auto middle = all.begin() + static_cast<typename container_type::difference_type>(oldSize);
    if (!std::is_sorted(middle, all.end(), StartsEarlier()))
        boost::sort::pdqsort_branchless(middle, all.end(), StartsEarlier());
    if (oldSize > 0)
        std::inplace_merge(all.begin(), middle, all.end(), StartsEarlier());

    auto kept = all.begin();
    for (auto next = kept; ++next != all.end();)
        if (!extend(*kept, *next))
            *++kept = *next;
    all.erase(++kept, all.end());
    all.shrink_to_fit();
    m_ranges.swap(all);
}

} // namespace Qel
