// Compares compressed_set with boost::icl::interval_set<unsigned>.  Both are built from 100,000 ranges.  Prints the
// time and the memory of each, the ratio, and whether the ratio meets its requirement.  The exit code is 1 if a
// requirement is not met.
//
// "at once": all ranges are inserted by one call, as the reader of an address pool does.
// "one by one": each range is inserted by its own call.  The interval_set has no other way.  A requirement exists for
// ascending ranges only: compressed_set is a sorted vector, and an insertion at a random position moves half of it.

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/icl/interval_set.hpp>

#include "QelCore/QelCompressedSet.h"
#include "RatioTable.h"

namespace {

using namespace Qel;
using namespace Qel::Bench;
using Range = range<unsigned>;
using Ranges = std::vector<Range>;

constexpr unsigned rangeCount = 100'000;

/// Allocated through CountingAllocator and not yet released.
std::size_t bytesAllocated = 0;

/// Adds the memory of its containers to bytesAllocated.
template <class T> struct CountingAllocator {
    using value_type = T;

    CountingAllocator() = default;
    template <class U> CountingAllocator(const CountingAllocator<U>&) {}

    T* allocate(std::size_t n) {
        bytesAllocated += n * sizeof(T);
        return std::allocator<T>().allocate(n);
    }
    void deallocate(T* block, std::size_t n) {
        bytesAllocated -= n * sizeof(T);
        std::allocator<T>().deallocate(block, n);
    }
    friend bool operator==(const CountingAllocator&, const CountingAllocator&) { return true; }
};

template <template <class> class Allocator> using SetOf = compressed_set<unsigned, std::vector, Allocator<Range>>;
template <template <class> class Allocator>
using PeerOf = boost::icl::interval_set<unsigned, std::less, boost::icl::interval<unsigned>::type, Allocator>;

using Set = SetOf<std::allocator>;
using Peer = PeerOf<std::allocator>;

// ---- Input

/// Random ranges of 1 to `longest` addresses that start at 1 to `universe`.
Ranges randomRanges(unsigned universe, unsigned longest) {
    std::mt19937 random(20261121);
    std::uniform_int_distribution<unsigned> start(1, universe);
    std::uniform_int_distribution<unsigned> length(0, longest - 1);
    Ranges ranges;
    for (unsigned i = 0; i < rangeCount; ++i) {
        const unsigned first = start(random);
        ranges.push_back({first, first + length(random)});
    }
    return ranges;
}

Ranges ascendingAddresses() {
    Ranges ranges;
    for (unsigned i = 1; i <= rangeCount; ++i)
        ranges.push_back({i, i});
    return ranges;
}

// ---- Methods of insertion

template <class AnySet = Set> AnySet buildAtOnce(const Ranges& ranges) {
    AnySet set;
    set.insert(ranges.begin(), ranges.end());
    return set;
}

template <class AnySet = Set> AnySet buildOneByOne(const Ranges& ranges) {
    AnySet set;
    for (const Range& each : ranges)
        set.insert(each);
    return set;
}

template <class AnyPeer = Peer> AnyPeer buildPeer(const Ranges& ranges) {
    AnyPeer set;
    for (const Range& each : ranges)
        set.add(boost::icl::interval<unsigned>::closed(each.start, each.end));
    return set;
}

template <auto build> void bench(benchmark::State& state, const Ranges& ranges) {
    for (auto _ : state)
        benchmark::DoNotOptimize(build(ranges));
}

// ---- Results

struct Row {
    const char* title;
    const char* method; ///< "at once" or "one by one"
    Ranges ranges;
    void (*ours)(benchmark::State&, const Ranges&);
    double required; ///< speed, as a multiple of the peer's; 0: no requirement
};

const std::vector<Row>& rows() {
    constexpr unsigned everywhere = 4'000'000'000;
    static const std::vector<Row> all{
        {"sparse, 64 of 4 billion", "at once", randomRanges(everywhere, 64), bench<buildAtOnce<>>, 2},
        {"half full, 256 of 16 million", "at once", randomRanges(1U << 24, 256), bench<buildAtOnce<>>, 2},
        {"dense, 32 of 1 million", "at once", randomRanges(1U << 20, 32), bench<buildAtOnce<>>, 2},
        {"full, 16 of 65,536", "at once", randomRanges(1U << 16, 16), bench<buildAtOnce<>>, 2},
        {"ascending adjacent addresses", "at once", ascendingAddresses(), bench<buildAtOnce<>>, 10},
        {"ascending adjacent addresses", "one by one", ascendingAddresses(), bench<buildOneByOne<>>, 10},
        {"full, 16 of 65,536", "one by one", randomRanges(1U << 16, 16), bench<buildOneByOne<>>, 0},
        {"sparse, 64 of 4 billion", "one by one", randomRanges(everywhere, 64), bench<buildOneByOne<>>, 0},
    };
    return all;
}

std::string nameOf(const Row& row, const char* side) {
    return std::string(row.title) + ", " + row.method + ", " + side;
}

void registerAll() {
    constexpr int repetitions = 3;
    for (const Row& row : rows())
        for (const auto& [side, run] : {std::pair{"ours", row.ours}, std::pair{"peer", &bench<buildPeer<>>}})
            benchmark::RegisterBenchmark(nameOf(row, side).c_str(),
                                         [run = run, &row](benchmark::State& state) { run(state, row.ranges); })
                ->Repetitions(repetitions)
                ->MinTime(0.1)
                ->Unit(benchmark::kMillisecond);
}

/// A table of processor times in milliseconds or of memory in KiB.
RatioTable startTable(const char* unit) {
    return {"100,000 ranges", "", unit, 3};
}

bool printTimes(const BestTimes& times) {
    const RatioTable table = startTable("ms");
    bool allReached = true;
    for (const Row& row : rows()) {
        const double ours = times.of(nameOf(row, "ours"));
        const double peer = times.of(nameOf(row, "peer"));
        if (ours > 0 && peer > 0)
            allReached =
                table.printLine(row.title, row.method, ours, peer, Measure::timesFaster, row.required) && allReached;
    }
    return allReached;
}

template <class AnySet, class Build> double kilobytesOf(const Build& build, const Ranges& ranges) {
    const std::size_t before = bytesAllocated;
    const AnySet set = build(ranges);
    return static_cast<double>(bytesAllocated - before) / 1024;
}

bool printMemory() {
    using CountedSet = SetOf<CountingAllocator>;
    using CountedPeer = PeerOf<CountingAllocator>;
    std::printf("\n");
    const RatioTable table = startTable("KiB");
    bool allReached = true;
    for (const Row& row : rows()) {
        // A set built one by one keeps the capacity of its largest size, so it has no memory requirement.
        const bool isAtOnce = std::string(row.method) == "at once";
        const double ours =
            kilobytesOf<CountedSet>(isAtOnce ? buildAtOnce<CountedSet> : buildOneByOne<CountedSet>, row.ranges);
        const double peer = kilobytesOf<CountedPeer>(buildPeer<CountedPeer>, row.ranges);
        allReached =
            table.printLine(row.title, row.method, ours, peer, Measure::timesFaster, isAtOnce ? 4 : 0) && allReached;
    }
    return allReached;
}

/// Checks that both sides build equal sets.
bool agree() {
    for (const Row& row : rows()) {
        const Set set = buildAtOnce(row.ranges);
        const Peer peer = buildPeer(row.ranges);
        const bool areEqual =
            std::equal(set.begin(), set.end(), peer.begin(), peer.end(), [](const Range& a, const auto& b) {
                return a.start == boost::icl::first(b) && a.end == boost::icl::last(b);
            });
        if (!areEqual) {
            std::printf("%s: the sets differ\n", row.title);
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    BestTimes times(BestTimes::Clock::processor, 1e3);
    if (!runBenchmarks(argc, argv, registerAll, times))
        return 2;
    const bool areEqual = agree();
    const bool isFastEnough = printTimes(times);
    const bool isSmallEnough = printMemory();
    return areEqual && isFastEnough && isSmallEnough ? 0 : 1;
}
