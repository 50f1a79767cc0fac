#include "qel/cachefile/CacheFileChecker.h"

#include <algorithm>
#include <random>

#include "tools/cachefile/CacheFindings.h"

namespace {

using namespace Qel::Tool;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

TEST(CacheFileCheckerTest, AcceptsValidFile) {
    EXPECT_THAT(findingsIn(SampleCacheFile()), IsEmpty());
}

TEST(CacheFileCheckerTest, AcceptsEmptyCache) {
    CacheFileBuilder fresh;
    fresh.resize(4096);
    const std::array<std::uint32_t, 14> header{56, 1, 96, 4096, 56, 4044, 0, 0xCACEFE03, 56, 16, 225, 92, 1, 1};
    for (std::uint32_t i = 0; i < header.size(); ++i)
        fresh.set(4 * i, header[i]);
    fresh.set(56, -56);
    fresh.set(60, 500);
    fresh.set(4060, 5);
    fresh.set(4064, 1);
    fresh.set(4072, 1);
    const CacheFileReport report = checkCacheFile(fresh.bytes());
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(report.blocks, 2U);
    EXPECT_EQ(report.freeBytes, 4000U);
    EXPECT_EQ(report.records, 0U);
    EXPECT_EQ(report.achievableSize, 96U);
}

TEST(CacheFileCheckerTest, ReportsSizesOfValidFile) {
    const SampleCacheFile file;
    const CacheFileReport report = checkCacheFile(file.bytes());
    EXPECT_EQ(report.records, 2U);
    EXPECT_EQ(report.snapshotRefCount, 1);
    EXPECT_EQ(report.blocks, 7U);
    EXPECT_EQ(report.freeBlocks, 2U);
    EXPECT_EQ(report.freeBytes, 64U + (4096 - file.tail));
    EXPECT_EQ(report.largestFreeBlock, 4096U - file.tail);
    // Header, the snapshot of two entries and a free slot, and the records of 222 and 132 bytes.
    EXPECT_EQ(report.achievableSize, 56U + 80 + 232 + 144);
}

TEST(CacheFileCheckerTest, ReportsHeldSnapshotWithoutFinding) {
    const SampleCacheFile file;
    const CacheFileReport report = checkCacheFile(file.bytes());
    EXPECT_THAT(report.heldSnapshots,
                ElementsAre(AllOf(Field(&HeldSnapshot::offset, file.heldSnapshot - 8), Field(&HeldSnapshot::readers, 3),
                                  Field(&HeldSnapshot::records, 2))));
}

TEST(CacheFileCheckerTest, ReportsHeldSnapshotWithoutRecords) {
    CacheFileBuilder file;
    file.addSnapshot(1, {}, 1);
    file.finish(file.addSnapshot(1, {}, 1));
    EXPECT_THAT(findingsIn(file), IsEmpty());
    EXPECT_EQ(checkCacheFile(file.bytes()).heldSnapshots.size(), 1U);
}

TEST(CacheFileCheckerTest, AcceptsBlockWithOneSpareUnit) {
    CacheFileBuilder file;
    const std::uint32_t record = file.addUsed(92 + 8 + 4);
    file.set(record, 1);
    file.putKey(record + 20, {1, 1});
    file.set(record + 80, 4);
    file.finish(file.addSnapshot(1, {{{1, 1}, record}}));
    EXPECT_THAT(findingsIn(file), IsEmpty());
}

TEST(CacheFileCheckerTest, AcceptsBytesAfterTheHeapLeftByInterruptedGrowth) {
    SampleCacheFile file;
    file.resize(8192);
    EXPECT_THAT(findingsIn(file), IsEmpty());
}

// --- header

struct HeaderConstant {
    std::uint32_t offset;
    const char* text;
};

class CacheFileCheckerHeaderTest : public testing::TestWithParam<HeaderConstant> {};

TEST_P(CacheFileCheckerHeaderTest, ReportsWrongConstant) {
    SampleCacheFile file;
    file.set(GetParam().offset, 77);
    expectOnly(file, isFinding(FindingKind::headerConstant, GetParam().offset, GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Constants, CacheFileCheckerHeaderTest,
    testing::Values(HeaderConstant{4, "blocks is 77, not 1"}, HeaderConstant{16, "headerSize is 77, not 56"},
                    HeaderConstant{28, "magic is 0x0000004D, not 0xCACEFE03"},
                    HeaderConstant{32, "headerBytes is 77, not 56"}, HeaderConstant{36, "keyBytes is 77, not 16"},
                    HeaderConstant{40, "revision is 77, not 225"}, HeaderConstant{44, "valueBytes is 77, not 92"},
                    HeaderConstant{48, "generation is 77, not 1"}, HeaderConstant{52, "valid is 77, not 1"}));

TEST(CacheFileCheckerTest, ReportsFileMarkedAsUnusable) {
    SampleCacheFile file;
    file.set(52, 0);
    expectOnly(file, isFinding(FindingKind::headerConstant, 52, "marked as unusable"));
}

TEST(CacheFileCheckerTest, ReportsFileShorterThanItsSize) {
    SampleCacheFile file;
    file.resize(2048);
    expectOnly(file, isFinding(FindingKind::fileLength, 12, "size is 4096, but the file has 2048 bytes"));
}

TEST(CacheFileCheckerTest, ReportsOneFindingForFileTruncatedWithinRecords) {
    const SampleCacheFile whole;
    for (std::uint32_t length = 56; length < whole.tail; ++length) {
        SampleCacheFile file;
        file.resize(length);
        expectOnly(file, isFinding(FindingKind::fileLength, 12, "size is 4096"));
    }
}

TEST(CacheFileCheckerTest, ReportsOneFindingForFileTruncatedAfterLastFreeBlock) {
    CacheFileBuilder file;
    const std::uint32_t record = file.addRecord({1, 1}, 1);
    const std::uint32_t snapshot = file.addSnapshot(1, {{{1, 1}, record}});
    file.addFree(64);
    const std::uint32_t old = file.addRecord({2, 2}, 1);
    file.addSnapshot(1, {{{2, 2}, old}});
    file.finish(snapshot, file.size());
    file.resize(old + 92);
    expectOnly(file, isFinding(FindingKind::fileLength, 12, "but the file has"));
}

TEST(CacheFileCheckerTest, ReportsSizeTooSmallForTheBlocks) {
    for (const std::uint32_t size : {0U, 8U, 64U, 1024U, 4088U}) {
        SampleCacheFile file;
        file.set(12, size);
        EXPECT_THAT(findingsIn(file),
                    ElementsAre(isFinding(FindingKind::fileLength, 12, "size is " + std::to_string(size))));
    }
}

TEST(CacheFileCheckerTest, ReportsSizeGreaterThanTheFile) {
    SampleCacheFile file;
    file.set(12, 0xFFFFFFF8);
    expectOnly(file, isFinding(FindingKind::fileLength, 12, "but the file has 4096 bytes"));
}

TEST(CacheFileCheckerTest, ReportsSizeThatIsNotAMultipleOfEight) {
    SampleCacheFile file;
    file.set(12, 4098);
    expectOnly(file, isFinding(FindingKind::fileLength, 12, "not a multiple of 8"));
}

TEST(CacheFileCheckerTest, ReportsWrongNumberOfBytesInUse) {
    SampleCacheFile file;
    const std::uint32_t used = file.word(8);
    file.set(8, used + 8);
    expectOnly(file, isFinding(FindingKind::counter, 8,
                               "ttlAllocated is " + std::to_string(used + 8) + ", but " + std::to_string(used)));
}

TEST(CacheFileCheckerTest, ReportsZeroBytesInUseAsUnformatted) {
    SampleCacheFile file;
    file.set(8, 0);
    expectOnly(file, isFinding(FindingKind::unformatted, 8, "would format the file again"));
}

TEST(CacheFileCheckerTest, ReportsOneFindingForFileShorterThanHeader) {
    CacheFileBuilder file;
    file.resize(55);
    expectOnly(file, isFinding(FindingKind::fileLength, 0, "shorter than a header"));
}

// --- snapshot

TEST(CacheFileCheckerTest, ReportsNullSnapshotPointer) {
    SampleCacheFile file;
    file.set(20, 1);
    expectOnly(file, isFinding(FindingKind::snapshotPointer, 20, "null pointer"));
}

TEST(CacheFileCheckerTest, ReportsSnapshotOutsideTheBlocks) {
    for (const std::uint32_t target : {0U, 56U, 4096U, 0x80000000U}) {
        SampleCacheFile file;
        file.point(20, target);
        expectOnly(file, isFinding(FindingKind::snapshotPointer, 20, "where no block's data start"));
    }
}

TEST(CacheFileCheckerTest, ReportsSnapshotInFreeBlock) {
    SampleCacheFile file;
    file.point(20, file.gap + 8);
    expectOnly(file, isFinding(FindingKind::snapshotPointer, 20, "in the free block at"));
}

TEST(CacheFileCheckerTest, ReportsInvalidSnapshotReferenceCount) {
    for (const std::int32_t count : {0, -1, 0x7FFFFFFF}) {
        SampleCacheFile file;
        file.set(file.currentSnapshot, count);
        expectOnly(file, isFinding(FindingKind::snapshotRefCount, file.currentSnapshot,
                                   "reference count is " + std::to_string(count)));
    }
}

TEST(CacheFileCheckerTest, ReportsMoreEntriesThanFitTheBlock) {
    for (const std::uint32_t count : {4U, 0xFFFFFFFFU}) {
        SampleCacheFile file;
        file.set(file.currentSnapshot + 4, count);
        expectOnly(file, isFinding(FindingKind::snapshotSize, file.currentSnapshot + 4,
                                   std::to_string(count) + " entries and 1 free slots"));
    }
}

TEST(CacheFileCheckerTest, ReportsWrongNumberOfFreeSlots) {
    SampleCacheFile file;
    file.set(file.currentSnapshot + 8, 9);
    expectOnly(file, isFinding(FindingKind::snapshotSize, file.currentSnapshot + 4, "2 entries and 9 free slots"));
}

TEST(CacheFileCheckerTest, ReportsBlockTooSmallForSnapshot) {
    CacheFileBuilder file;
    file.finish(file.addUsed(8));
    expectOnly(file, isFinding(FindingKind::snapshotSize, 56, "too small for a snapshot"));
}

TEST(CacheFileCheckerTest, ReportsKeysOutOfOrder) {
    CacheFileBuilder file;
    const std::uint32_t a = file.addRecord({2, 1}, 1);
    const std::uint32_t b = file.addRecord({1, 2}, 1);
    const std::uint32_t snapshot = file.addSnapshot(1, {{{2, 1}, a}, {{1, 2}, b}});
    file.finish(snapshot);
    expectOnly(file, isFinding(FindingKind::keyOrder, snapshot + 12 + 20,
                               "01000000-0000-0000-0200-000000000000 is not greater than "
                               "02000000-0000-0000-0100-000000000000"));
}

TEST(CacheFileCheckerTest, ComparesSecondHalvesOfKeysWhenFirstHalvesAreEqual) {
    CacheFileBuilder file;
    const std::uint32_t a = file.addRecord({1, 0x00FF}, 1);
    const std::uint32_t b = file.addRecord({1, 0x0100}, 1);
    file.finish(file.addSnapshot(1, {{{1, 0x00FF}, a}, {{1, 0x0100}, b}}));
    EXPECT_THAT(findingsIn(file), IsEmpty());
}

TEST(CacheFileCheckerTest, ReportsDuplicateKey) {
    CacheFileBuilder file;
    const std::uint32_t a = file.addRecord({1, 1}, 1);
    const std::uint32_t b = file.addRecord({1, 1}, 1);
    const std::uint32_t snapshot = file.addSnapshot(1, {{{1, 1}, a}, {{1, 1}, b}});
    file.finish(snapshot);
    expectOnly(file, isFinding(FindingKind::keyOrder, snapshot + 32, "is not greater than"));
}

// --- records

TEST(CacheFileCheckerTest, ReportsNullRecordPointer) {
    SampleCacheFile file;
    file.set(file.entry(0) + 16, 1);
    expectOnly(file, isFinding(FindingKind::recordPointer, file.entry(0) + 16, "is a null pointer"));
}

TEST(CacheFileCheckerTest, ReportsRecordOutsideTheBlocks) {
    SampleCacheFile file;
    file.point(file.entry(0) + 16, file.firstRecord + 8);
    expectOnly(file, isFinding(FindingKind::recordPointer, file.entry(0) + 16, "where no block's data start"));
}

TEST(CacheFileCheckerTest, ReportsRecordInFreeBlock) {
    SampleCacheFile file;
    file.point(file.entry(0) + 16, file.gap + 8);
    expectOnly(file, isFinding(FindingKind::recordPointer, file.entry(0) + 16, "which is free"));
}

TEST(CacheFileCheckerTest, ReportsRecordInSnapshotBlock) {
    SampleCacheFile file;
    file.point(file.entry(0) + 16, file.currentSnapshot);
    expectOnly(file, isFinding(FindingKind::recordPointer, file.entry(0) + 16, "which holds a snapshot"));
}

TEST(CacheFileCheckerTest, ReportsRecordSharedByTwoEntries) {
    SampleCacheFile file;
    file.point(file.entry(1) + 16, file.firstRecord);
    EXPECT_THAT(findingsIn(file),
                ElementsAre(isFinding(FindingKind::recordRefCount, file.secondRecord,
                                      "is 2, but the number of snapshots that list it is 1"),
                            isFinding(FindingKind::recordPointer, file.entry(1) + 16, "which another entry uses")));
}

TEST(CacheFileCheckerTest, ReportsRecordWithDifferentKey) {
    SampleCacheFile file;
    file.putKey(file.firstRecord + 20, {9, 9});
    expectOnly(file, isFinding(FindingKind::recordKey, file.firstRecord + 20, "09000000-0000-0000-0900-000000000000"));
}

TEST(CacheFileCheckerTest, ReportsRecordLongerThanItsBlock) {
    SampleCacheFile file;
    file.set(file.firstRecord + 80, 0xFFFFFFFF);
    file.set(file.firstRecord + 84, 0xFFFFFFFF);
    expectOnly(file, isFinding(FindingKind::recordLength, file.firstRecord + 80, "4294967295 and 4294967295 bytes"));
}

TEST(CacheFileCheckerTest, ReportsRecordTooShortForItsBlock) {
    SampleCacheFile file;
    file.set(file.firstRecord + 80, 84);
    expectOnly(file, isFinding(FindingKind::recordLength, file.firstRecord + 80, "84 and 30 bytes"));
}

TEST(CacheFileCheckerTest, ReportsBlockTooSmallForRecord) {
    CacheFileBuilder file;
    const std::uint32_t record = file.addUsed(80);
    file.finish(file.addSnapshot(1, {{{1, 1}, record}}));
    expectOnly(file, isFinding(FindingKind::recordLength, record - 8, "too small for a record"));
}

TEST(CacheFileCheckerTest, ReportsTypeWithoutTerminator) {
    SampleCacheFile file;
    file.fill(file.firstRecord + 44, 16, 'x');
    expectOnly(file, isFinding(FindingKind::recordType, file.firstRecord + 44, "is not null-terminated"));
}

TEST(CacheFileCheckerTest, ReportsNonzeroBytesAfterTypeTerminator) {
    SampleCacheFile file;
    file.fill(file.firstRecord + 44 + 15, 1, 0);
    file.fill(file.firstRecord + 44 + 14, 1, 'x');
    expectOnly(file, isFinding(FindingKind::recordType, file.firstRecord + 44, "not padded with zeros"));
}

TEST(CacheFileCheckerTest, AcceptsUnspecifiedAndEmptyType) {
    SampleCacheFile file;
    file.fill(file.firstRecord + 44, 16, 0);
    EXPECT_THAT(findingsIn(file), IsEmpty());
    file.fill(file.firstRecord + 45, 1, 1);
    EXPECT_THAT(findingsIn(file), IsEmpty());
    file.fill(file.firstRecord + 45, 1, 2);
    expectOnly(file, isFinding(FindingKind::recordType, file.firstRecord + 44, "not padded with zeros"));
}

TEST(CacheFileCheckerTest, ReportsWrongRecordReferenceCount) {
    SampleCacheFile file;
    file.set(file.secondRecord, 3);
    expectOnly(file, isFinding(FindingKind::recordRefCount, file.secondRecord,
                               "is 3, but the number of snapshots that list it is 2"));
}

TEST(CacheFileCheckerTest, ReportsWrongReferenceCountOfRecordInHeldSnapshotOnly) {
    SampleCacheFile file;
    file.set(file.oldRecord, 0);
    expectOnly(file, isFinding(FindingKind::recordRefCount, file.oldRecord,
                               "is 0, but the number of snapshots that list it is 1"));
}

TEST(CacheFileCheckerTest, ChecksRecordsOfHeldSnapshots) {
    SampleCacheFile file;
    file.putKey(file.oldRecord + 20, {9, 9});
    expectOnly(file, isFinding(FindingKind::recordKey, file.oldRecord + 20, "09000000"));
}

TEST(CacheFileCheckerTest, ReportsUnreferencedBlock) {
    CacheFileBuilder file;
    const std::uint32_t lost = file.addRecord({5, 5}, 1, 20);
    file.finish(file.addSnapshot(1, {}, 1));
    expectOnly(file, isFinding(FindingKind::unreferenced, lost - 8, "unreferenced block at 56, 120 bytes"));
}

TEST(CacheFileCheckerTest, ReportsUnheldSnapshotAndItsRecordsAsUnreferenced) {
    CacheFileBuilder file;
    const std::uint32_t record = file.addRecord({5, 5}, 1);
    const std::uint32_t snapshot = file.addSnapshot(0, {{{5, 5}, record}});
    file.finish(file.addSnapshot(1, {}, 1));
    EXPECT_THAT(findingsIn(file), ElementsAre(isFinding(FindingKind::unreferenced, record - 8, "unreferenced"),
                                              isFinding(FindingKind::unreferenced, snapshot - 8, "unreferenced")));
}

TEST(CacheFileCheckerTest, ReportsInvalidHeldSnapshotAsUnreferenced) {
    // A negative reference count, keys out of order, an entry that does not refer to a record.
    for (const int flaw : {0, 1, 2}) {
        CacheFileBuilder file;
        const std::uint32_t first = file.addRecord({1, 1}, 1);
        const std::uint32_t second = file.addRecord({2, 2}, 1);
        const std::uint32_t current = file.addSnapshot(1, {{{1, 1}, first}, {{2, 2}, second}});
        const std::uint32_t old = file.addSnapshot(1, {{{1, 1}, first}, {{2, 2}, second}});
        if (flaw == 0)
            file.set(old, -1);
        else if (flaw == 1)
            file.putKey(old + 12, {3, 3});
        else
            file.point(old + 12 + 16, current);
        file.finish(current);
        expectOnly(file, isFinding(FindingKind::unreferenced, old - 8, "64 bytes"));
    }
}

// --- robustness

TEST(CacheFileCheckerTest, SurvivesEveryFlippedBitAndReportsThoseInTheHeader) {
    const SampleCacheFile sound;
    constexpr std::uint32_t lockWord = 24; // unused
    for (std::uint32_t offset = 0; offset < sound.tail + 8; offset += 4) {
        for (std::uint32_t bit = 0; bit < 32; ++bit) {
            SampleCacheFile file;
            file.set(offset, file.word(offset) ^ (1U << bit));
            const bool found = !findingsIn(file).empty();
            EXPECT_TRUE(found || offset >= 56 || offset == lockWord) << "bit " << bit << " at " << offset;
        }
    }
}

TEST(CacheFileCheckerTest, SurvivesRandomDamage) {
    std::minstd_rand random(20261120);
    const auto below = [&](std::uint32_t end) { return static_cast<std::uint32_t>(random() % end); };
    for (int round = 0; round < 5000; ++round) {
        SampleCacheFile file;
        for (std::uint32_t changes = below(8) + 1; changes != 0; --changes)
            file.set(below(file.tail / 4 + 2) * 4, below(3) != 0 ? below(5000) : below(0x7FFFFFFF) * 2);
        file.resize(below(4) != 0 ? 4096 : below(4097));
        (void)checkCacheFile(file.bytes());
    }
}

// --- identification

TEST(CacheFileKindTest, RecognisesCacheBySignature) {
    EXPECT_EQ(identifyCacheFile(SampleCacheFile().bytes()), CacheFileKind::cache);
}

TEST(CacheFileKindTest, ToleratesOneDamagedSignatureField) {
    SampleCacheFile file;
    file.set(28, 0);
    EXPECT_EQ(identifyCacheFile(file.bytes()), CacheFileKind::cache);
}

TEST(CacheFileKindTest, RecognisesEmptyAndZeroFilesAsUnformatted) {
    EXPECT_EQ(identifyCacheFile({}), CacheFileKind::unformatted);
    CacheFileBuilder file;
    EXPECT_EQ(identifyCacheFile(file.bytes()), CacheFileKind::unformatted);
    file.resize(20);
    EXPECT_EQ(identifyCacheFile(file.bytes()), CacheFileKind::unformatted);
}

TEST(CacheFileKindTest, RecognisesOtherFilesAsForeign) {
    CacheFileBuilder file;
    file.resize(4096);
    file.putText(0, "\x7F"
                    "ELF and more");
    EXPECT_EQ(identifyCacheFile(file.bytes()), CacheFileKind::foreign);
    file.resize(30);
    EXPECT_EQ(identifyCacheFile(file.bytes()), CacheFileKind::foreign);
}

TEST(CacheFindingTest, KindsHaveDistinctNames) {
    std::vector<std::string_view> names;
    for (int kind = 0; kind <= static_cast<int>(FindingKind::unreferenced); ++kind)
        names.push_back(nameOf(static_cast<FindingKind>(kind)));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
    EXPECT_FALSE(names.front().empty());
}

} // namespace
