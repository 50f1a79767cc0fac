#include "qel/cachefile/CacheHeap.h"

#include "tools/cachefile/CacheFindings.h"

namespace {

using namespace Qel::Tool;
using testing::ElementsAre;

// --- blocks

TEST(CacheHeapTest, ReportsUsedBlockOfZeroLength) {
    SampleCacheFile file;
    file.set(file.secondRecord - 4, 0);
    expectOnly(file, isFinding(FindingKind::blockSize, file.secondRecord - 8, "block length is zero"));
}

TEST(CacheHeapTest, ReportsFreeBlockOfZeroLength) {
    SampleCacheFile file;
    file.set(file.gap + 4, 0);
    expectOnly(file, isFinding(FindingKind::blockSize, file.gap, "block length is zero"));
}

TEST(CacheHeapTest, ReportsBlockThatOverrunsTheHeap) {
    SampleCacheFile file;
    file.set(file.tail + 4, 0x10000000);
    expectOnly(file, isFinding(FindingKind::blockSize, file.tail, "overruns the end of the heap at 4096"));
}

TEST(CacheHeapTest, ReportsBlockThatOverrunsTheNext) {
    SampleCacheFile file;
    file.set(file.firstRecord - 4, file.word(file.firstRecord - 4) + 1);
    expectOnly(file, isFinding(FindingKind::blockSize, file.firstRecord - 8,
                               "overruns the block at " + std::to_string(file.gap)));
}

TEST(CacheHeapTest, ReportsWrongLengthOfSnapshotBlock) {
    SampleCacheFile file;
    file.set(file.currentSnapshot - 4, 100000);
    expectOnly(file, isFinding(FindingKind::blockSize, file.currentSnapshot - 8, "overruns the block at"));
}

TEST(CacheHeapTest, ReportsBlockThatIsTooShort) {
    SampleCacheFile file;
    file.set(file.secondRecord - 4, file.word(file.secondRecord - 4) - 2);
    EXPECT_THAT(findingsIn(file),
                ElementsAre(isFinding(FindingKind::recordLength, file.secondRecord + 80, "do not match"),
                            isFinding(FindingKind::blockSize, file.oldRecord - 8 - 16, "block length is zero")));
}

TEST(CacheHeapTest, ReportsBlockWithoutData) {
    CacheFileBuilder file;
    const std::uint32_t snapshot = file.addSnapshot(1, {}, 1);
    const std::uint32_t tiny = file.addFree(8);
    file.addSnapshot(1, {}, 1);
    file.finish(snapshot);
    expectOnly(file, isFinding(FindingKind::blockSize, tiny, "no data after its head"));
}

// --- free list

TEST(CacheHeapTest, ReportsFreeListPointerOutsideTheFile) {
    for (const std::uint32_t target : {8U, 4096U, 0x40000000U, 0x80000000U}) {
        SampleCacheFile file;
        file.point(file.gap, target);
        expectOnly(file, isFinding(FindingKind::freeListLink, file.gap, "where no block starts"));
    }
}

TEST(CacheHeapTest, ReportsFreeListPointerIntoBlock) {
    SampleCacheFile file;
    file.point(0, file.secondRecord);
    expectOnly(file, isFinding(FindingKind::freeListLink, 0,
                               "points to " + std::to_string(file.secondRecord) + ", where no block starts"));
}

TEST(CacheHeapTest, ReportsFreeListThatEndsWithNull) {
    SampleCacheFile file;
    file.set(file.tail, 1);
    expectOnly(file, isFinding(FindingKind::freeListLink, file.tail, "null pointer"));
}

TEST(CacheHeapTest, ReportsCycleInFreeList) {
    SampleCacheFile file;
    file.point(file.tail, file.gap);
    EXPECT_THAT(findingsIn(file), ElementsAre(isFinding(FindingKind::freeListLink, file.tail, "contains a cycle")));
}

TEST(CacheHeapTest, ReportsFreeBlockThatPointsToItself) {
    SampleCacheFile file;
    file.point(file.gap, file.gap);
    expectOnly(file, isFinding(FindingKind::freeListLink, file.gap, "contains a cycle"));
}

TEST(CacheHeapTest, ReportsFreeListOutOfOrder) {
    SampleCacheFile file;
    file.point(0, file.tail);
    file.point(file.tail, file.gap);
    file.point(file.gap, 0);
    expectOnly(file,
               isFinding(FindingKind::freeListOrder, file.tail,
                         "is out of order: " + std::to_string(file.gap) + " follows " + std::to_string(file.tail)));
}

TEST(CacheHeapTest, ReportsUnmergedFreeBlocks) {
    CacheFileBuilder file;
    const std::uint32_t snapshot = file.addSnapshot(1, {}, 1);
    const std::uint32_t first = file.addFree(160);
    file.finish(snapshot);
    expectOnly(file, isFinding(FindingKind::freeListUnmerged, first + 160,
                               "was not merged with the free block at " + std::to_string(first)));
}

TEST(CacheHeapTest, ReportsFreeBlockMissingFromTheList) {
    SampleCacheFile file;
    file.point(0, file.tail);
    EXPECT_THAT(findingsIn(file), ElementsAre(isFinding(FindingKind::counter, 8, "ttlAllocated"),
                                              isFinding(FindingKind::unreferenced, file.gap, "64 bytes")));
}

} // namespace
