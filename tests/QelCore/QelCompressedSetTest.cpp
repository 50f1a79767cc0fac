#include "QelCore/QelCompressedSet.h"

#include <array>
#include <cstdint>
#include <deque>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>

namespace Qel {

void PrintTo(const range<unsigned>& one, std::ostream* out) {
    *out << '[' << one.start << ',' << one.end << ']';
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Range = range<unsigned>;
using Ranges = std::vector<Range>;
using Set = compressed_set<unsigned, std::vector, std::allocator<Range>>;

constexpr unsigned greatest = std::numeric_limits<unsigned>::max();

Set setOf(const Ranges& ranges) {
    Set set;
    for (const Range& each : ranges)
        set.insert(each);
    return set;
}

TEST(QelCompressedSetTest, IsInitiallyEmpty) {
    const Set set{std::allocator<Range>()};
    EXPECT_TRUE(set.empty());
    EXPECT_EQ(set.size(), 0U);
    EXPECT_THAT(set, IsEmpty());
}

TEST(QelCompressedSetTest, ValueBetweenTwoRangesMergesThem) {
    EXPECT_THAT(setOf({{5, 6}, {8, 9}, {7, 7}}), ElementsAre(Range{5, 9}));
}

TEST(QelCompressedSetTest, RangeBeforeFirstMergesOnlyIfAdjacent) {
    EXPECT_THAT(setOf({{5, 6}, {1, 3}}), ElementsAre(Range{1, 3}, Range{5, 6}));
    EXPECT_THAT(setOf({{5, 6}, {1, 4}}), ElementsAre(Range{1, 6}));
}

TEST(QelCompressedSetTest, RangeAfterLastMergesOnlyIfAdjacent) {
    EXPECT_THAT(setOf({{5, 6}, {8, 9}}), ElementsAre(Range{5, 6}, Range{8, 9}));
    EXPECT_THAT(setOf({{1, 2}, {3, 4}}), ElementsAre(Range{1, 4}));
}

TEST(QelCompressedSetTest, ContainedRangeChangesNothing) {
    EXPECT_THAT(setOf({{10, 20}, {12, 15}}), ElementsAre(Range{10, 20}));
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {10, 20}, {31, 31}}), ElementsAre(Range{10, 20}, Range{30, 40}));
}

TEST(QelCompressedSetTest, RangeAcrossOthersAbsorbsThem) {
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {50, 60}, {15, 55}}), ElementsAre(Range{10, 60}));
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {50, 60}, {5, 70}}), ElementsAre(Range{5, 70}));
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {50, 60}, {25, 45}}),
                ElementsAre(Range{10, 20}, Range{25, 45}, Range{50, 60}));
}

TEST(QelCompressedSetTest, RangeInGapMergesOnlyWithAdjacentNeighbours) {
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {22, 28}}), ElementsAre(Range{10, 20}, Range{22, 28}, Range{30, 40}));
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {21, 29}}), ElementsAre(Range{10, 40}));
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {21, 28}}), ElementsAre(Range{10, 28}, Range{30, 40}));
    EXPECT_THAT(setOf({{10, 20}, {30, 40}, {22, 29}}), ElementsAre(Range{10, 20}, Range{22, 40}));
}

TEST(QelCompressedSetTest, ValuesWithOneBetweenThemAreNotMerged) {
    EXPECT_THAT(setOf({{1, 1}, {3, 3}}), ElementsAre(Range{1, 1}, Range{3, 3}));
}

TEST(QelCompressedSetTest, AcceptsAllButTheTwoExtremeValues) {
    EXPECT_THAT(setOf({{1, 1}, {greatest - 1, greatest - 1}, {2, greatest - 2}}), ElementsAre(Range{1, greatest - 1}));
}

TEST(QelCompressedSetTest, EmptyRangeAddsNothing) {
    EXPECT_THAT(setOf({{6, 5}}), IsEmpty());
    EXPECT_THAT(setOf({{10, 20}, {6, 5}, {22, 21}, {26, 25}, {15, 14}}), ElementsAre(Range{10, 20}));
}

using QelCompressedSetDeathTest = testing::Test;

TEST(QelCompressedSetDeathTest, ExtremeValuesTerminateTheProcess) {
    constexpr const char* report = "core/src/QelCore/QelContainers.*570.*insert";
    for (const Range& bad : Ranges{{0, 5}, {5, greatest}, {0, 0}, {greatest, greatest}, {0, greatest}, {9, 7}}) {
        Set set = setOf({{10, 20}});
        EXPECT_DEATH(set.insert(bad), report) << bad.start;
        EXPECT_DEATH(set.insert(&bad, &bad + 1), report) << bad.start;
    }
}

/// Reference model: one bit per value, for values below 64.
class Bitmap {
public:
    void insert(const Range& added) {
        for (unsigned value = added.start; value <= added.end; ++value)
            m_bits |= std::uint64_t{1} << value;
    }
    /// The runs of set bits as ranges.
    [[nodiscard]] Ranges ranges() const {
        Ranges runs;
        for (unsigned value = 0; value < 64; ++value) {
            if (!holds(value))
                continue;
            if (runs.empty() || runs.back().end + 1 != value)
                runs.push_back({value, value});
            runs.back().end = value;
        }
        return runs;
    }
    /// Whether `compressed` equals ranges(), checked with bit operations because it is called millions of times.
    template <class Container> [[nodiscard]] bool isExactly(const Container& compressed) const {
        std::uint64_t found = 0;
        unsigned nextStart = 0; // smallest valid start of the next range
        for (const auto& [start, end] : compressed) {
            if (start < nextStart || end < start || end >= 63)
                return false;
            found |= ((std::uint64_t{2} << end) - 1) & ~((std::uint64_t{1} << start) - 1);
            nextStart = end + 2U;
        }
        return found == m_bits;
    }

private:
    [[nodiscard]] bool holds(unsigned value) const { return value < 64 && (m_bits >> value & 1) != 0; }

    std::uint64_t m_bits = 0;
};

TEST(QelCompressedSetTest, ModelRecognisesNormalForm) {
    Bitmap model;
    model.insert({1, 2});
    model.insert({4, 4});
    EXPECT_THAT(model.ranges(), ElementsAre(Range{1, 2}, Range{4, 4}));
    EXPECT_TRUE(model.isExactly(Ranges{{1, 2}, {4, 4}}));
    for (const Ranges& wrong :
         {Ranges{}, {{1, 2}}, {{1, 4}}, {{1, 1}, {2, 2}, {4, 4}}, {{4, 4}, {1, 2}}, {{1, 2}, {4, 5}}})
        EXPECT_FALSE(model.isExactly(wrong));
}

/// Returns the set of values whose bits are set in `bits`; bit 0 is the value 1.
Set setOfBits(unsigned bits) {
    Set set;
    for (unsigned value = 1; bits != 0; ++value, bits >>= 1)
        if (bits & 1)
            set.insert({value, value});
    return set;
}

TEST(QelCompressedSetTest, InsertingEveryRangeIntoEverySetOfElevenValuesYieldsTheUnion) {
    constexpr unsigned values = 11;
    for (unsigned bits = 0; bits < 1U << values; ++bits) {
        const Set before = setOfBits(bits);
        for (unsigned start = 1; start <= values; ++start)
            for (unsigned end = start; end <= values; ++end) {
                Set set = before;
                set.insert({start, end});
                const unsigned both = bits | (((1U << (end - start + 1)) - 1) << (start - 1));
                Bitmap model;
                for (unsigned value = 1; value <= values; ++value)
                    if (both >> (value - 1) & 1)
                        model.insert({value, value});
                ASSERT_TRUE(model.isExactly(set)) << testing::PrintToString(before) << " with " << start << ',' << end;
            }
    }
}

/// Inserts random ranges of up to `longest` values and compares the set with the model after each step.
template <class AnySet> void fillAtRandom(unsigned steps, unsigned longest) {
    constexpr unsigned values = 62;
    std::mt19937 random(20261121 + longest);
    const auto upTo = [&](unsigned most) { return 1 + static_cast<unsigned>(random()) % most; };
    while (steps > 0) {
        AnySet set;
        Bitmap model;
        for (unsigned left = upTo(24); left > 0 && steps > 0; --left, --steps) {
            const unsigned start = upTo(values);
            const Range added{start, std::min(values, start + upTo(longest) - 1)};
            model.insert(added);
            using Value = decltype(set.begin()->start);
            set.insert({static_cast<Value>(added.start), static_cast<Value>(added.end)});
            ASSERT_TRUE(model.isExactly(set)) << testing::PrintToString(Ranges(model.ranges()));
        }
    }
}

TEST(QelCompressedSetTest, MillionValuesYieldTheirUnion) {
    fillAtRandom<Set>(1'000'000, 1);
}

TEST(QelCompressedSetTest, MillionShortRangesYieldTheirUnion) {
    fillAtRandom<Set>(1'000'000, 3);
}

TEST(QelCompressedSetTest, MillionLongRangesYieldTheirUnion) {
    fillAtRandom<Set>(1'000'000, 20);
}

TEST(QelCompressedSetTest, WorksWithAnyRandomAccessContainerAndUnsignedType) {
    using ByteRange = range<std::uint8_t>;
    fillAtRandom<compressed_set<std::uint8_t, std::deque, std::allocator<ByteRange>>>(50'000, 4);
    compressed_set<std::uint8_t, std::vector, std::allocator<ByteRange>> bytes;
    bytes.insert({1, 254});
    EXPECT_EQ(bytes.begin()->end, 254);
}

TEST(QelCompressedSetTest, BulkInsertionEqualsInsertingOneByOne) {
    std::mt19937 random(20261122);
    const auto below = [&](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
    for (int run = 0; run < 3000; ++run) {
        Ranges ranges;
        for (unsigned left = below(40); left > 0; --left) {
            const unsigned start = 1 + below(200);
            ranges.push_back({start, start + below(6) - (below(9) == 0 ? 1 : 0)});
        }
        const auto middle = ranges.begin() + static_cast<std::ptrdiff_t>(below(ranges.size() + 1));
        Set set = setOf(Ranges(ranges.begin(), middle));
        set.insert(middle, ranges.end());
        ASSERT_EQ(set, setOf(ranges)) << testing::PrintToString(ranges);
    }
}

/// Counts the elements for which memory is allocated.
template <class T> struct CountingAllocator {
    using value_type = T;

    explicit CountingAllocator(std::size_t& itemCount) : count(&itemCount) {}
    T* allocate(std::size_t items) {
        *count += items;
        return std::allocator<T>().allocate(items);
    }
    void deallocate(T* memory, std::size_t items) {
        *count -= items;
        std::allocator<T>().deallocate(memory, items);
    }
    friend bool operator==(const CountingAllocator&, const CountingAllocator&) = default;

    std::size_t* count;
};

TEST(QelCompressedSetTest, BulkInsertionLeavesNoSpareCapacity) {
    std::size_t allocated = 0;
    compressed_set<unsigned, std::vector, CountingAllocator<Range>> set{CountingAllocator<Range>(allocated)};
    Ranges ranges;
    for (unsigned start = 2000; start > 0; start -= 2)
        ranges.push_back({start, start + (start % 10 == 0 ? 0 : 1)});
    set.insert(ranges.begin(), ranges.end());
    EXPECT_EQ(set.size(), 200U);
    EXPECT_EQ(allocated, set.size());
    EXPECT_LT(set.size(), ranges.size());
}

TEST(QelCompressedSetTest, SetCanBeInsertedIntoItself) {
    Set set = setOf({{1, 2}, {4, 5}});
    set.insert(set.begin(), set.end());
    EXPECT_THAT(set, ElementsAre(Range{1, 2}, Range{4, 5}));
}

TEST(QelCompressedSetTest, ComparatorsUseTheEndOfTheFirstRange) {
    EXPECT_TRUE(searchStart(Range{1, 4}, Range{5, 9}));
    EXPECT_FALSE(searchStart(Range{1, 5}, Range{5, 9}));
    EXPECT_TRUE(searchEnd(Range{7, 8}, Range{5, 9}));
    EXPECT_FALSE(searchEnd(Range{1, 9}, Range{5, 9}));
}

} // namespace
} // namespace Qel
