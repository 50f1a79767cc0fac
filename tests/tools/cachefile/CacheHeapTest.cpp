#include "qel/cachefile/CacheHeap.h"

#include "tools/cachefile/CacheFindings.h"

namespace {

using namespace Qel::Tool;
using testing::ElementsAre;

// --- blocks

TEST(CacheHeapTest, ABlockWithoutLengthIsFound) {
    SampleCacheFile file;
    file.set(file.secondRecord - 4, 0);
    expectOnly(file, isFinding(FindingKind::blockSize, file.secondRecord - 8, "block of no length"));
}

TEST(CacheHeapTest, AFreeBlockWithoutLengthIsFound) {
    SampleCacheFile file;
    file.set(file.gap + 4, 0);
    expectOnly(file, isFinding(FindingKind::blockSize, file.gap, "block of no length"));
}

TEST(CacheHeapTest, ABlockThatRunsOverTheEndIsFound) {
    SampleCacheFile file;
    file.set(file.tail + 4, 0x10000000);
    expectOnly(file, isFinding(FindingKind::blockSize, file.tail, "runs over the end of the heap at 4096"));
}

TEST(CacheHeapTest, ABlockThatRunsOverTheNextIsFound) {
    SampleCacheFile file;
    file.set(file.firstRecord - 4, file.word(file.firstRecord - 4) + 1);
    expectOnly(file, isFinding(FindingKind::blockSize, file.firstRecord - 8,
                               "runs over the block at " + std::to_string(file.gap)));
}

TEST(CacheHeapTest, ADamagedLengthOfTheSnapshotsBlockIsFound) {
    SampleCacheFile file;
    file.set(file.currentSnapshot - 4, 100000);
    expectOnly(file, isFinding(FindingKind::blockSize, file.currentSnapshot - 8, "runs over the block at"));
}

TEST(CacheHeapTest, ABlockThatEndsTooEarlyIsFound) {
    SampleCacheFile file;
    file.set(file.secondRecord - 4, file.word(file.secondRecord - 4) - 2);
    EXPECT_THAT(findingsIn(file),
                ElementsAre(isFinding(FindingKind::recordLength, file.secondRecord + 80, "don't go with"),
                            isFinding(FindingKind::blockSize, file.oldRecord - 8 - 16, "block of no length")));
}

TEST(CacheHeapTest, ABlockOfOneUnitIsFound) {
    CacheFileBuilder file;
    const std::uint32_t snapshot = file.addSnapshot(1, {}, 1);
    const std::uint32_t tiny = file.addFree(8);
    file.addSnapshot(1, {}, 1);
    file.finish(snapshot);
    expectOnly(file, isFinding(FindingKind::blockSize, tiny, "nothing behind its head"));
}

// --- free list

TEST(CacheHeapTest, AFreeListThatLeadsOutOfTheFileIsFound) {
    for (const std::uint32_t target : {8U, 4096U, 0x40000000U, 0x80000000U}) {
        SampleCacheFile file;
        file.point(file.gap, target);
        expectOnly(file, isFinding(FindingKind::freeListLink, file.gap, "where no block begins"));
    }
}

TEST(CacheHeapTest, AFreeListThatLeadsIntoABlockIsFound) {
    SampleCacheFile file;
    file.point(0, file.secondRecord);
    expectOnly(file, isFinding(FindingKind::freeListLink, 0,
                               "leads to " + std::to_string(file.secondRecord) + ", where no block begins"));
}

TEST(CacheHeapTest, AFreeListThatEndsInNullIsFound) {
    SampleCacheFile file;
    file.set(file.tail, 1);
    expectOnly(file, isFinding(FindingKind::freeListLink, file.tail, "null pointer"));
}

TEST(CacheHeapTest, AFreeListInACircleIsFound) {
    SampleCacheFile file;
    file.point(file.tail, file.gap);
    EXPECT_THAT(findingsIn(file), ElementsAre(isFinding(FindingKind::freeListLink, file.tail, "in a circle")));
}

TEST(CacheHeapTest, AFreeBlockThatPointsAtItselfIsFound) {
    SampleCacheFile file;
    file.point(file.gap, file.gap);
    expectOnly(file, isFinding(FindingKind::freeListLink, file.gap, "in a circle"));
}

TEST(CacheHeapTest, AFreeListOutOfOrderIsFound) {
    SampleCacheFile file;
    file.point(0, file.tail);
    file.point(file.tail, file.gap);
    file.point(file.gap, 0);
    expectOnly(file, isFinding(FindingKind::freeListOrder, file.tail, "goes back to " + std::to_string(file.gap)));
}

TEST(CacheHeapTest, FreeBlocksThatWereNotMergedAreFound) {
    CacheFileBuilder file;
    const std::uint32_t snapshot = file.addSnapshot(1, {}, 1);
    const std::uint32_t first = file.addFree(160);
    file.finish(snapshot);
    expectOnly(file, isFinding(FindingKind::freeListUnmerged, first + 160,
                               "follows the free block at " + std::to_string(first)));
}

TEST(CacheHeapTest, AFreeBlockMissingInTheListIsUnreferencedAndMiscounted) {
    SampleCacheFile file;
    file.point(0, file.tail);
    EXPECT_THAT(findingsIn(file), ElementsAre(isFinding(FindingKind::counter, 8, "ttlAllocated"),
                                              isFinding(FindingKind::unreferenced, file.gap, "64 bytes")));
}

} // namespace
