#include "QelCore/QelSharedMemoryManager.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace Qel {
namespace {

using block_ctrl = QelSharedMemoryManager::block_ctrl;

constexpr unsigned headerBytes = 56;

/// A heap in ordinary memory, inspected by offsets.
class Heap {
public:
    explicit Heap(unsigned total, unsigned capacity = 1 << 20) : m_memory(capacity / 8) {
        new (m_memory.data()) QelSharedMemoryManager(total, headerBytes);
    }

    QelSharedMemoryManager& operator*() { return *manager(); }
    QelSharedMemoryManager* operator->() { return manager(); }

    char* base() { return reinterpret_cast<char*>(m_memory.data()); }
    std::uint32_t word(std::size_t offset) {
        std::uint32_t value;
        std::memcpy(&value, base() + offset, sizeof value);
        return value;
    }
    void setWord(std::size_t offset, std::uint32_t value) { std::memcpy(base() + offset, &value, sizeof value); }

    char* allocate(std::size_t bytes) { return manager()->allocate<char>(bytes); }
    std::size_t offsetOf(const char* data) { return static_cast<std::size_t>(data - base()); }

    /// Offset and size in units of each block in the free list.
    std::vector<std::pair<std::size_t, unsigned>> freeBlocks() {
        std::vector<std::pair<std::size_t, unsigned>> blocks;
        for (std::size_t at = word(0); at != 0; at = static_cast<std::uint32_t>(at + word(at)))
            blocks.emplace_back(at, word(at + 4));
        return blocks;
    }

    /// Checks all invariants between operations.  `used` maps data offsets to requested sizes.
    void expectSound(const std::map<std::size_t, std::size_t>& used) {
        const auto free = freeBlocks();
        EXPECT_TRUE(std::is_sorted(free.begin(), free.end()));
        std::map<std::size_t, unsigned> all(free.begin(), free.end());
        unsigned allocated = headerBytes;
        for (const auto& [data, bytes] : used) {
            const unsigned units = word(data - 8 + 4);
            EXPECT_GE(units * 8 - 8, bytes);
            EXPECT_LE(units, (bytes + 7) / 8 + 2) << "at most one spare unit";
            EXPECT_TRUE(all.emplace(data - 8, units).second) << "a used block is in the free list";
            allocated += units * 8;
        }
        EXPECT_EQ(word(8), allocated);
        std::size_t end = headerBytes;
        bool lastWasFree = false;
        for (const auto& [offset, units] : all) {
            EXPECT_EQ(offset, end) << "blocks tile the heap";
            const bool isFree = !used.contains(offset + 8);
            EXPECT_FALSE(isFree && lastWasFree) << "free neighbours at " << offset;
            lastWasFree = isFree;
            EXPECT_GE(units, 2U);
            end = offset + units * 8;
        }
        EXPECT_EQ(end, word(12));
    }

private:
    QelSharedMemoryManager* manager() { return reinterpret_cast<QelSharedMemoryManager*>(m_memory.data()); }

    std::vector<std::uint64_t> m_memory;
};

TEST(QelSharedMemoryManagerTest, FormattingCreatesOneFreeBlockAfterTheHeader) {
    Heap heap(4096);
    EXPECT_EQ(heap.word(0), 56U) << "first free block";
    EXPECT_EQ(heap.word(4), 1U) << "units of the sentinel";
    EXPECT_EQ(heap.word(8), 56U) << "allocated bytes";
    EXPECT_EQ(heap.word(12), 4096U) << "size of the heap";
    EXPECT_EQ(heap.word(16), 56U) << "size of the header";
    EXPECT_EQ(heap.word(56), static_cast<std::uint32_t>(-56)) << "the list ends at the sentinel";
    EXPECT_EQ(heap.word(60), 505U);
}

TEST(QelSharedMemoryManagerTest, HeaderIsRoundedUpToUnits) {
    std::vector<std::uint64_t> memory(64);
    auto* manager = new (memory.data()) QelSharedMemoryManager(512, 20);
    EXPECT_EQ(manager->lowerBound() - reinterpret_cast<std::uintptr_t>(manager), 24U);
}

TEST(QelSharedMemoryManagerTest, OneByteUsesTwoUnitsAtTheTailOfTheFreeBlock) {
    Heap heap(4096);
    char* data = heap.allocate(1);
    EXPECT_EQ(heap.offsetOf(data), 4088U);
    EXPECT_EQ(heap.word(4084), 2U);
    EXPECT_EQ(heap->getBlockSize(data), 16U);
    EXPECT_EQ(heap.word(8), 56U + 16);
    heap.expectSound({{4088, 1}});
}

TEST(QelSharedMemoryManagerTest, AllocationOfZeroBytesReturnsNull) {
    Heap heap(4096);
    EXPECT_EQ(heap.allocate(0), nullptr);
    EXPECT_EQ(heap->getTtlAllocated(), 56U);
}

TEST(QelSharedMemoryManagerTest, AllFreeBytesCanBeAllocated) {
    Heap heap(4096);
    char* data = heap.allocate(4096 - 56 - 8);
    EXPECT_EQ(heap.offsetOf(data), 64U);
    EXPECT_EQ(heap->getTtlAllocated(), 4096U);
    EXPECT_EQ(heap.word(0), 0U) << "an empty list is a pointer to itself";
    EXPECT_EQ(heap.allocate(1), nullptr) << "no free bytes";
    heap->deallocate(data);
    heap.expectSound({});
}

TEST(QelSharedMemoryManagerTest, AllocationAboveFreeBytesReturnsNull) {
    Heap heap(4096);
    EXPECT_EQ(heap.allocate(4096 - 56 - 8 + 1), nullptr);
    EXPECT_EQ(heap.allocate(0xFFFFFFFF), nullptr);
    heap.expectSound({});
}

TEST(QelSharedMemoryManagerTest, AllocationFromFragmentedHeapReturnsNull) {
    Heap heap(56 + 64);
    char* low = heap.allocate(8);
    char* middle = heap.allocate(8);
    char* high = heap.allocate(16);
    heap->deallocate(low);
    heap->deallocate(high);
    EXPECT_EQ(heap.allocate(32), nullptr);
    heap.expectSound({{heap.offsetOf(middle), 8}});
}

TEST(QelSharedMemoryManagerTest, BlockWithOneSpareUnitIsNotSplit) {
    Heap heap(56 + 32);
    char* data = heap.allocate(16);
    EXPECT_EQ(heap.offsetOf(data), 64U);
    EXPECT_EQ(heap->getBlockSize(data), 32U);
    heap.expectSound({{64, 16}});
}

TEST(QelSharedMemoryManagerTest, BlockWithTwoSpareUnitsIsSplit) {
    Heap heap(56 + 32);
    char* data = heap.allocate(8);
    EXPECT_EQ(heap.offsetOf(data), 56U + 16 + 8);
    EXPECT_EQ(heap.freeBlocks(), (std::vector<std::pair<std::size_t, unsigned>>{{56, 2}}));
}

/// A heap with free blocks of the given sizes in units, in address order, separated by used blocks.
Heap heapWithFreeBlocks(const std::vector<unsigned>& units) {
    unsigned total = headerBytes;
    for (const unsigned count : units)
        total += count * 8 + 16;
    Heap heap(total);
    std::vector<char*> toFree;
    for (auto count = units.rbegin(); count != units.rend(); ++count) {
        EXPECT_NE(heap.allocate(8), nullptr);
        toFree.push_back(heap.allocate(*count * 8 - 8));
    }
    for (char* data : toFree)
        heap->deallocate(data);
    return heap;
}

unsigned unitsTakenFrom(Heap& heap, std::size_t block, std::size_t bytes) {
    const char* data = heap.allocate(bytes);
    const std::size_t offset = heap.offsetOf(data) - 8;
    return offset >= block ? heap.word(offset + 4) : 0;
}

TEST(QelSharedMemoryManagerTest, SmallestFittingBlockIsChosen) {
    Heap heap = heapWithFreeBlocks({40, 20, 30});
    EXPECT_EQ(heap.offsetOf(heap.allocate(24)), 56U + 40 * 8 + 16 + 16 * 8 + 8) << "the tail of the block of 20";
}

TEST(QelSharedMemoryManagerTest, EarlierOfTwoEqualBlocksIsChosen) {
    Heap heap = heapWithFreeBlocks({40, 20, 20});
    EXPECT_EQ(heap.offsetOf(heap.allocate(24)), 56U + 40 * 8 + 16 + 16 * 8 + 8);
}

TEST(QelSharedMemoryManagerTest, FirstBlockThatLeavesAtMostAQuarterEndsTheSearch) {
    // 8 units are needed: the block of 10 leaves a fifth and the block of 8 nothing, but the block of 10 comes first.
    Heap heap = heapWithFreeBlocks({30, 10, 8});
    EXPECT_EQ(heap.offsetOf(heap.allocate(56)), 56U + 30 * 8 + 16 + 2 * 8 + 8) << "the block is split";
}

TEST(QelSharedMemoryManagerTest, QuarterIsComparedExactly) {
    // A remainder of 3 of 12 units is exactly a quarter; 3 of 11 is more, so the search continues to the exact fit.
    Heap quarter = heapWithFreeBlocks({12, 9});
    EXPECT_EQ(quarter.offsetOf(quarter.allocate(64)), 56U + 3 * 8 + 8);
    Heap more = heapWithFreeBlocks({11, 8});
    EXPECT_EQ(more.offsetOf(more.allocate(56)), 56U + 11 * 8 + 16 + 8);
}

TEST(QelSharedMemoryManagerTest, SplittingKeepsThePositionInTheFreeList) {
    Heap heap = heapWithFreeBlocks({10, 30});
    EXPECT_EQ(unitsTakenFrom(heap, 56 + 10 * 8, 100), 14U);
    EXPECT_EQ(heap.freeBlocks(), (std::vector<std::pair<std::size_t, unsigned>>{{56, 10}, {56 + 96, 16}}));
}

TEST(QelSharedMemoryManagerTest, ThreeAdjacentBlocksFreedInAnyOrderMerge) {
    std::vector<unsigned> order{0, 1, 2};
    do {
        Heap heap(56 + 3 * 24);
        char* data[] = {heap.allocate(16), heap.allocate(16), heap.allocate(16)};
        EXPECT_EQ(heap->getTtlAllocated(), heap->getSize());
        for (const unsigned which : order)
            heap->deallocate(data[which]);
        EXPECT_EQ(heap.freeBlocks(), (std::vector<std::pair<std::size_t, unsigned>>{{56, 9}}));
        EXPECT_EQ(heap->getTtlAllocated(), 56U);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(QelSharedMemoryManagerTest, GrowthMergesWithFreeBlockAtTheEnd) {
    Heap heap(4096);
    heap->resize(8192);
    EXPECT_EQ(heap->getSize(), 8192U);
    EXPECT_EQ(heap->getTtlAllocated(), 56U);
    EXPECT_EQ(heap.freeBlocks(), (std::vector<std::pair<std::size_t, unsigned>>{{56, 505 + 512}}));
}

TEST(QelSharedMemoryManagerTest, GrowthAfterUsedBlockAddsFreeBlock) {
    Heap heap(4096);
    const std::size_t data = heap.offsetOf(heap.allocate(8));
    heap->resize(4096 + 512);
    EXPECT_EQ(heap.freeBlocks(), (std::vector<std::pair<std::size_t, unsigned>>{{56, 503}, {4096, 64}}));
    heap.expectSound({{data, 8}});
}

TEST(QelSharedMemoryManagerTest, SmallerSizeChangesNothing) {
    Heap heap(4096);
    const std::vector<char> before(heap.base(), heap.base() + 4096);
    heap->resize(2048);
    heap->resize(4096);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), heap.base()));
}

TEST(QelSharedMemoryManagerTest, IsInitializedChecksFormatAndMappedSize) {
    Heap heap(4096);
    EXPECT_TRUE(heap->isInitialized(0));
    EXPECT_TRUE(heap->isInitialized(4096));
    EXPECT_TRUE(heap->isInitialized(8192));
    EXPECT_FALSE(heap->isInitialized(4095));
    heap.setWord(8, 0);
    EXPECT_FALSE(heap->isInitialized(0));
}

TEST(QelSharedMemoryManagerTest, RangeStartsAfterTheHeaderAndEndsAtTheSize) {
    Heap heap(4096);
    EXPECT_FALSE(heap->isInRange(heap.base() + 55));
    EXPECT_TRUE(heap->isInRange(heap.base() + 56));
    EXPECT_TRUE(heap->isInRange(heap.base() + 4095));
    EXPECT_FALSE(heap->isInRange(heap.base() + 4096));
}

TEST(QelSharedMemoryManagerTest, RoundsBytesUpToUnits) {
    EXPECT_EQ(QelSharedMemoryManager::getBlocks(0), 0U);
    EXPECT_EQ(QelSharedMemoryManager::getBlocks(1), 1U);
    EXPECT_EQ(QelSharedMemoryManager::getBlocks(8), 1U);
    EXPECT_EQ(QelSharedMemoryManager::getBlocks(9), 2U);
    EXPECT_EQ(QelSharedMemoryManager::getBlocks(0xFFFFFFFF), 0x20000000U);
}

TEST(QelSharedMemoryManagerTest, ParseInvertsGetData) {
    Heap heap(4096);
    char* data = heap.allocate(20);
    block_ctrl* block = block_ctrl::parse(data);
    EXPECT_EQ(block->getData(), data);
    EXPECT_EQ(block->getSize(), 32U);
    EXPECT_EQ(reinterpret_cast<char*>(block->adjacent()), heap.base() + 4096);
}

TEST(QelSharedMemoryManagerTest, RandomAllocationsAgreeWithModelAndKeepInvariants) {
    std::mt19937 random(20261120);
    Heap heap(4096);
    std::map<std::size_t, std::size_t> used;
    for (int step = 0; step < 6000; ++step) {
        const auto action = random() % 100;
        if (action < 50) {
            const std::size_t bytes = 1 + random() % (random() % 8 ? 200 : 3000);
            if (const char* data = heap.allocate(bytes)) {
                EXPECT_EQ(heap.offsetOf(data) % 8, 0U);
                std::memset(heap.base() + heap.offsetOf(data), static_cast<int>(random() % 256), bytes);
                EXPECT_TRUE(used.emplace(heap.offsetOf(data), bytes).second);
            } else {
                const auto free = heap.freeBlocks();
                EXPECT_TRUE(std::none_of(free.begin(), free.end(), [&](const auto& block) {
                    return block.second >= (bytes + 7) / 8 + 1;
                })) << "allocation failed although a block is large enough";
            }
        } else if (action < 99 && !used.empty()) {
            auto victim = used.lower_bound(random() % heap->getSize());
            if (victim == used.end())
                victim = used.begin();
            heap->deallocate(heap.base() + victim->first);
            used.erase(victim);
        } else if (heap->getSize() < 1 << 17) {
            heap->resize(heap->getSize() + 16 + 8 * (random() % 100));
        }
        heap.expectSound(used);
        if (HasFailure())
            FAIL() << "at step " << step;
    }
    for (const auto& [data, bytes] : used)
        heap->deallocate(heap.base() + data);
    EXPECT_EQ(heap.freeBlocks().size(), 1U);
    EXPECT_EQ(heap->getTtlAllocated(), headerBytes);
}

/// Compares an allocation ahead of a deallocation in one heap with one after it in a copy.
void expectAheadAgrees(Heap& heap, std::size_t doomed, std::size_t bytes) {
    Heap later = heap;
    const std::size_t end = doomed + later.word(doomed - 4) * 8 - 8;
    later->deallocate(later.base() + doomed);
    const char* expected = later.allocate(bytes);
    const auto ahead = heap->allocateAhead<char>(bytes, heap.base() + doomed);
    if (ahead.overlaps) {
        ASSERT_NE(expected, nullptr);
        const std::size_t offset = later.offsetOf(expected);
        EXPECT_LT(offset - 8, end);
        EXPECT_GT(offset - 8 + later.word(offset - 4) * 8, doomed - 8);
        EXPECT_EQ(ahead.data, nullptr);
        heap->deallocate(heap.base() + doomed);
        EXPECT_EQ(heap.offsetOf(heap.allocate(bytes)), offset) << "the heap is unchanged";
        return;
    }
    heap->deallocate(heap.base() + doomed);
    ASSERT_EQ(ahead.data != nullptr, expected != nullptr);
    if (expected) {
        EXPECT_EQ(heap.offsetOf(ahead.data), later.offsetOf(expected));
        EXPECT_EQ(heap->getBlockSize(ahead.data), later->getBlockSize(expected));
    }
    EXPECT_EQ(heap.freeBlocks(), later.freeBlocks());
    EXPECT_EQ(heap->getTtlAllocated(), later->getTtlAllocated());
}

TEST(QelSharedMemoryManagerTest, AllocationAheadEqualsAllocationAfterDeallocation) {
    std::mt19937 random(4);
    unsigned overlapping = 0;
    unsigned full = 0;
    for (int round = 0; round < 3000; ++round) {
        Heap heap(1024, 1024);
        std::vector<std::size_t> used;
        while (const char* data = heap.allocate(1 + random() % 60))
            used.push_back(heap.offsetOf(data));
        std::shuffle(used.begin(), used.end(), random);
        for (auto freed = random() % (used.size() - 1); freed > 0; --freed) {
            heap->deallocate(heap.base() + used.back());
            used.pop_back();
        }
        const std::size_t bytes = random() % 150;
        Heap copy = heap;
        const auto ahead = copy->allocateAhead<char>(bytes, copy.base() + used[0]);
        overlapping += ahead.overlaps;
        full += !ahead.overlaps && !ahead.data;
        expectAheadAgrees(heap, used[0], bytes);
        if (HasFailure())
            FAIL() << "in round " << round;
    }
    EXPECT_GT(overlapping, 100U);
    EXPECT_GT(full, 100U);
    EXPECT_LT(overlapping + full, 2500U);
}

TEST(QelSharedMemoryManagerTest, AllocationAheadMayLeaveOneUnitThatMergesWithTheDoomedBlock) {
    Heap heap(56 + 80 + 24);
    const std::size_t high = heap.offsetOf(heap.allocate(72));
    const std::size_t doomed = heap.offsetOf(heap.allocate(16));
    heap->deallocate(heap.base() + high);
    const auto ahead = heap->allocateAhead<char>(64, heap.base() + doomed);
    ASSERT_NE(ahead.data, nullptr);
    EXPECT_EQ(heap->getBlockSize(ahead.data), 72U) << "one unit of the free block of 80 bytes remains";
    heap->deallocate(heap.base() + doomed);
    EXPECT_EQ(heap.freeBlocks(), (std::vector<std::pair<std::size_t, unsigned>>{{56, 4}}));
}

TEST(QelSharedMemoryManagerTest, AlternatingHeapsDoNotMixTheirFreeLists) {
    // The free list that a thread remembers from one heap mismatches the other at almost every step.
    std::mt19937 random(9);
    Heap heaps[] = {Heap(1 << 16), Heap(1 << 17)};
    std::map<std::size_t, std::size_t> used[2];
    for (int step = 0; step < 4000; ++step) {
        const unsigned which = random() % 3 == 0;
        Heap& heap = heaps[which];
        const std::size_t bytes = 1 + random() % 100;
        if (random() % 2) {
            if (const char* data = heap.allocate(bytes))
                used[which].emplace(heap.offsetOf(data), bytes);
        } else if (!used[which].empty()) {
            auto victim = used[which].lower_bound(random() % heap->getSize());
            if (victim == used[which].end())
                victim = used[which].begin();
            heap->deallocate(heap.base() + victim->first);
            used[which].erase(victim);
        }
        if (step % 20 == 0)
            heap.expectSound(used[which]);
        if (HasFailure())
            FAIL() << "at step " << step;
    }
}

TEST(QelSharedMemoryManagerTest, FreeListOfThousandsOfBlocksIsTraversedCompletely) {
    constexpr unsigned count = 3000;
    Heap heap(56 + count * 64);
    std::vector<char*> data;
    for (unsigned i = 0; i < count; ++i)
        data.push_back(heap.allocate(56));
    for (unsigned i = 0; i < count; i += 2)
        heap->deallocate(data[i]);
    EXPECT_EQ(heap.freeBlocks().size(), count / 2);
    EXPECT_EQ(heap.allocate(60), nullptr) << "no adjacent blocks are free";
    heap->deallocate(data[1]);
    EXPECT_EQ(heap.allocate(180), data[2]) << "the last block of the list, merged from three";
    for (unsigned i = 3; i < count; i += 2)
        heap->deallocate(data[i]);
    heap->deallocate(data[2]);
    EXPECT_EQ(heap.freeBlocks().size(), 1U);
    EXPECT_EQ(heap->getTtlAllocated(), 56U);
}

TEST(QelSharedMemoryManagerDeathTest, DoubleFreeIsFatal) {
    Heap heap(4096);
    char* data = heap.allocate(8);
    char* other = heap.allocate(100);
    heap->deallocate(data);
    EXPECT_DEATH(heap->deallocate(data), "core/src/QelCore/QelSharedMemoryManager");
    heap->deallocate(other);
    EXPECT_DEATH(heap->deallocate(data), "core/src/QelCore/QelSharedMemoryManager") << "inside a free block";
}

TEST(QelSharedMemoryManagerDeathTest, PointerOutsideTheHeapIsFatal) {
    Heap heap(4096);
    EXPECT_DEATH(heap->deallocate(heap.base() + 8), "core/src/QelCore/QelSharedMemoryManager");
    EXPECT_DEATH(heap->deallocate(heap.base() + 4096 + 8), "core/src/QelCore/QelSharedMemoryManager");
    EXPECT_DEATH(heap->deallocate(heap.allocate(32) + 4), "core/src/QelCore/QelSharedMemoryManager");
}

TEST(QelSharedMemoryManagerDeathTest, BlockLargerThanAllocatedBytesIsFatal) {
    Heap heap(4096);
    char* data = heap.allocate(8);
    heap.setWord(heap.offsetOf(data) - 4, 400);
    EXPECT_DEATH(heap->deallocate(data), "core/src/QelCore/QelSharedMemoryManager");
}

TEST(QelSharedMemoryManagerDeathTest, DamagedFreeListIsFatal) {
    Heap outside(4096);
    outside.setWord(56, 8192);
    EXPECT_DEATH(static_cast<void>(outside.allocate(100)), "core/src/QelCore/QelSharedMemoryManager");
    Heap empty(4096);
    empty.setWord(60, 0);
    EXPECT_DEATH(static_cast<void>(empty.allocate(8)), "core/src/QelCore/QelSharedMemoryManager");
    Heap circle = heapWithFreeBlocks({4, 4});
    circle.setWord(56 + 48, static_cast<std::uint32_t>(-48));
    EXPECT_DEATH(static_cast<void>(circle.allocate(40)), "core/src/QelCore/QelSharedMemoryManager");
}

TEST(QelSharedMemoryManagerDeathTest, FreeListLinkToInvalidOffsetIsFatal) {
    const auto lead = [](std::uint32_t from, std::uint32_t to) {
        // Otherwise valid: a list of blocks of two units, which are too small to end the search.
        Heap heap(4096);
        heap.setWord(60, 2);
        heap.setWord(from, to - from);
        heap.setWord(to, 0 - to);
        heap.setWord(to + 4, 2);
        static_cast<void>(heap.allocate(100));
    };
    for (const std::uint32_t from : {0U, 56U}) {
        EXPECT_DEATH(lead(from, 48), "core/src/QelCore/QelSharedMemoryManager") << "into the header";
        EXPECT_DEATH(lead(from, 4096), "core/src/QelCore/QelSharedMemoryManager") << "past the end";
        EXPECT_DEATH(lead(from, 100), "core/src/QelCore/QelSharedMemoryManager") << "unaligned";
    }
}

TEST(QelSharedMemoryManagerDeathTest, FreeBlockThatExtendsPastTheHeapIsFatal) {
    for (const unsigned spare : {1U, 10U, 100U}) {
        Heap heap(4096);
        heap.setWord(60, 505 + spare);
        EXPECT_DEATH(static_cast<void>(heap.allocate(152)), "core/src/QelCore/QelSharedMemoryManager")
            << "a tail of 20 units that begins " << 20 - static_cast<int>(spare) << " units before the end";
    }
}

TEST(QelSharedMemoryManagerDeathTest, FreeBlockThatOverlapsTheNextOneIsFatal) {
    Heap heap = heapWithFreeBlocks({10, 30});
    heap.setWord(60, 13);
    EXPECT_DEATH(static_cast<void>(heap.allocate(72)), "core/src/QelCore/QelSharedMemoryManager");
}

TEST(QelSharedMemoryManagerDeathTest, UsedBlockThatOverlapsTheNextFreeOneIsFatal) {
    Heap heap(4096);
    char* high = heap.allocate(56);
    char* middle = heap.allocate(8);
    char* low = heap.allocate(8);
    heap->deallocate(high);
    heap.setWord(heap.offsetOf(low) - 4, 5); // past the used block of two units, into the free one
    EXPECT_DEATH(heap->deallocate(low), "core/src/QelCore/QelSharedMemoryManager");
    heap->deallocate(middle);
}

TEST(QelSharedMemoryManagerDeathTest, GrowthByPartialUnitIsFatal) {
    Heap heap(4096);
    EXPECT_DEATH(heap->resize(4100), "core/src/QelCore/QelSharedMemoryManager");
}

} // namespace
} // namespace Qel
