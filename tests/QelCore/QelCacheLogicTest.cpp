#include "QelCore/QelCacheLogic.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <map>
#include <random>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "QelCore/QelFiles.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

using testing::IsEmpty;

constexpr unsigned page = 4096;
constexpr unsigned validOffset = 52;

/// Numbers below are those of pages of 4096 bytes.
class QelCacheLogicTest : public testing::Test {
protected:
    void SetUp() override {
        if (QelMemoryMappedFile::getMemoryPageSize() != page)
            GTEST_SKIP() << "pages of another size";
    }

    /// Blocks and counters of the file agree, and nothing is left of readers.
    void expectClean() { EXPECT_THAT(findingsIn(file), IsEmpty()); }

    const TempFile file;
};

std::vector<QelGUIDBase> keysOf(const TestListPtr& list) {
    std::vector<QelGUIDBase> keys;
    for (const auto& record : *list)
        keys.push_back(record.key);
    return keys;
}

// ---- attaching

TEST_F(QelCacheLogicTest, FreshFileHasEveryByteInItsPlace) {
    const TestCachePtr cache = attach(file);
    EXPECT_EQ(file.size(), 4096U);
    const std::uint32_t expected[14] = {
        56,         // 0: distance to the first free block
        1,          // 4: units of the sentinel
        96,         // 8: ttlAllocated
        4096,       // 12: size
        56,         // 16: headerSize
        4064 - 20,  // 20: distance to the snapshot
        0,          // 24: lock
        0xCACEFE03, // 28: magic
        56,         // 32: headerBytes
        16,         // 36: keyBytes
        225,        // 40: revision
        92,         // 44: valueBytes
        1,          // 48: generation
        1,          // 52: valid
    };
    for (unsigned i = 0; i < 14; ++i)
        EXPECT_EQ(file.word(4 * i), expected[i]) << "offset " << 4 * i;
    EXPECT_EQ(file.word(56), static_cast<std::uint32_t>(-56)) << "the free block is the last of the list";
    EXPECT_EQ(file.word(60), 500U) << "units of the free block";
    EXPECT_EQ(file.word(4060), 5U) << "units of the snapshot's block at 4056";
    EXPECT_EQ(file.word(4064), 1U) << "references of the snapshot";
    EXPECT_EQ(file.word(4068), 0U) << "count";
    EXPECT_EQ(file.word(4072), 1U) << "reserved";
    for (unsigned offset = 4076; offset < 4096; offset += 4)
        EXPECT_EQ(file.word(offset), 0U) << "the spare slot, offset " << offset;
    for (unsigned offset = 64; offset < 4056; offset += 4)
        EXPECT_EQ(file.word(offset), 0U) << "free bytes, offset " << offset;
    EXPECT_EQ(cache->getTotalAllocatedSize(), 96U);
    EXPECT_EQ(cache->getAchiveableSize(), 96U);
    EXPECT_EQ(cache->getID(), file.path());
    expectClean();
}

TEST_F(QelCacheLogicTest, SecondAttachingChangesNothing) {
    attach(file);
    const std::string before = file.read();
    const TestCachePtr cache = attach(file);
    EXPECT_TRUE(cache->isAccessible());
    EXPECT_EQ(file.read(), before);
}

TEST_F(QelCacheLogicTest, NothingIsOpenedBeforeInitialize) {
    const TestCachePtr cache = makeCache(file);
    EXPECT_FALSE(file.exists());
    EXPECT_FALSE(cache->isAccessible());
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), cacheNotAttached);
    EXPECT_EQ(cache->update(key(1), TestValue(key(1))), cacheNotAttached);
    EXPECT_EQ(cache->remove(key(1)), cacheNotAttached);
    EXPECT_EQ(cache->getCopy(key(1)), nullptr);
    EXPECT_EQ(cache->getList(), nullptr);
    EXPECT_EQ(cache->getTotalAllocatedSize(), 0U);
    EXPECT_EQ(cache->getAchiveableSize(), 0U);
    EXPECT_EQ(cacheNotAttached, -7);
}

TEST_F(QelCacheLogicTest, FileThatCannotBeMappedIsMinusTwo) {
    const TestCachePtr cache(new TestCache(file.path() + "/below", testMaxItem, testMaxLists, testMaxStorage));
    EXPECT_EQ(cache->initialize(true, true), -2);
    EXPECT_FALSE(cache->isAccessible());
}

/// One constant of the header, what a wrong value of it gives.
struct WrongConstant {
    unsigned offset;
    int code;
};

class QelCacheHeaderTest : public QelCacheLogicTest, public testing::WithParamInterface<WrongConstant> {};

TEST_P(QelCacheHeaderTest, WrongConstantHasItsCodeAndMarksTheFile) {
    attach(file);
    file.setWord(GetParam().offset, file.word(GetParam().offset) + 1);
    const std::string before = file.read();
    EXPECT_EQ(makeCache(file)->initialize(true, false), GetParam().code);
    EXPECT_EQ(file.read(), before) << "not marked unless asked for";
    const TestCachePtr cache = makeCache(file);
    EXPECT_EQ(cache->initialize(true, true), GetParam().code);
    EXPECT_FALSE(cache->isAccessible());
    EXPECT_EQ(file.word(validOffset), 0U);
    EXPECT_EQ(makeCache(file)->initialize(true, true), -14) << "the mark is seen first";
    EXPECT_EQ(makeCache(file)->initialize(true, false), -14) << "and stays";
}

INSTANTIATE_TEST_SUITE_P(Constants, QelCacheHeaderTest,
                         testing::Values(WrongConstant{32, -11}, WrongConstant{28, -12}, WrongConstant{36, -13},
                                         WrongConstant{40, -15}, WrongConstant{44, -16}));

TEST_F(QelCacheLogicTest, FirstWrongConstantInTheOrderOfTheTestsIsTold) {
    attach(file);
    const auto attempt = [&] { return makeCache(file)->initialize(true, false); };
    file.setWord(44, 0);
    EXPECT_EQ(attempt(), -16);
    file.setWord(40, 0);
    EXPECT_EQ(attempt(), -15);
    file.setWord(28, 0);
    EXPECT_EQ(attempt(), -12);
    file.setWord(36, 0);
    EXPECT_EQ(attempt(), -13);
    file.setWord(32, 0);
    EXPECT_EQ(attempt(), -11);
    file.setWord(52, 0);
    EXPECT_EQ(attempt(), -14);
}

TEST_F(QelCacheLogicTest, HeaderThatTellsOfMoreThanTheFileHoldsIsNotMapped) {
    attach(file);
    file.setWord(12, 4096 + 8);
    const TestCachePtr cache = makeCache(file);
    EXPECT_EQ(cache->initialize(true, false), -9);
    EXPECT_FALSE(cache->isAccessible());
    EXPECT_EQ(file.size(), 4096U) << "the file isn't extended for it";
    EXPECT_EQ(file.word(validOffset), 0U) << "marked, though nobody asked for it";
}

TEST_F(QelCacheLogicTest, HeaderThatTellsOfMoreThanTheLimitIsNotMapped) {
    {
        const TestCachePtr cache = attach(file);
        EXPECT_EQ(cache->insert(key(1), TestValue(key(1), 0, 10000)), 0);
    }
    EXPECT_EQ(makeCache(file, 8192)->initialize(true, false), -9);
}

TEST_F(QelCacheLogicTest, SizeThatIsDamagedWhileAttachedFailsTheLock) {
    const TestCachePtr cache = attach(file);
    const std::uint32_t good = file.word(12);
    file.setWord(12, 0x7FFFF000);
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), -9);
    EXPECT_EQ(cache->update(key(1), TestValue(key(1))), -9);
    EXPECT_EQ(cache->remove(key(1)), -9);
    EXPECT_EQ(cache->getCopy(key(1)), nullptr);
    EXPECT_EQ(cache->getList(), nullptr);
    file.setWord(12, good);
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), 0) << "the lock was given back each time";
}

TEST_F(QelCacheLogicTest, SnapshotOutsideTheMappingIsMinusEight) {
    attach(file);
    const std::uint32_t good = file.word(20);
    // null, itself, the header, behind the end, far behind, before the start, not aligned, up to the last bytes
    for (const std::uint32_t distance : {1U, 0U, 20U, 4096U - 20, 0x40000000U, 0xFFFFF000U, good - 4, good + 24}) {
        file.setWord(20, distance);
        EXPECT_EQ(makeCache(file)->initialize(true, false), -8) << distance;
        EXPECT_EQ(file.word(validOffset), 1U);
    }
    EXPECT_EQ(makeCache(file)->initialize(true, true), -8);
    EXPECT_EQ(file.word(validOffset), 0U);
}

TEST_F(QelCacheLogicTest, SnapshotWithMoreSlotsThanItsBlockIsMinusEight) {
    attach(file);
    for (const std::uint32_t count : {1U, 1000U, 0xFFFFFFFFU, 0x0CCCCCCDU}) {
        file.setWord(4068, count);
        EXPECT_EQ(makeCache(file)->initialize(true, false), -8) << count;
    }
    file.setWord(4068, 0);
    file.setWord(4060, 6);
    EXPECT_EQ(makeCache(file)->initialize(true, false), -8) << "a block beyond the end";
}

TEST_F(QelCacheLogicTest, HalfFormattedFileIsUnusable) {
    attach(file);
    file.setWord(validOffset, 0);
    EXPECT_EQ(makeCache(file)->initialize(true, false), -14);
}

TEST_F(QelCacheLogicTest, ForeignFileIsRefusedWithoutACrash) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        std::string bytes(below(random, 5000), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(1 + below(random, 255));
        file.write(bytes);
        const TestCachePtr cache = makeCache(file);
        if (bytes.size() >= 12) {
            EXPECT_LT(cache->initialize(true, false), 0);
        }
        removeFile(file.path());
    }
}

TEST_F(QelCacheLogicTest, CreateInstanceOfTheFirstKindFailsOnAnUnusableFile) {
    attach(file);
    file.setWord(28, 0);
    EXPECT_EQ(TestCache::createInstance(file.path(), true, true, testMaxItem, testMaxLists, testMaxStorage), nullptr);
    EXPECT_EQ(file.word(validOffset), 1U) << "and leaves it";
    file.setWord(28, 0xCACEFE03);
    EXPECT_NE(TestCache::createInstance(file.path(), true, true, testMaxItem, testMaxLists, testMaxStorage), nullptr);
}

TEST_F(QelCacheLogicTest, CreateInstanceOfTheOtherKindMakesAnUnusableFileAnew) {
    EXPECT_EQ(attach(file)->insert(key(1), TestValue(key(1))), 0);
    for (const unsigned damage : {12U, 20U, 28U}) {
        file.setWord(damage, 0x7FFFFFFF);
        const TestCachePtr cache =
            TestCache::createInstance(file.path(), false, true, testMaxItem, testMaxLists, testMaxStorage);
        ASSERT_NE(cache, nullptr) << damage;
        EXPECT_EQ(cache->getCopy(key(1)), nullptr);
        expectClean();
        EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    }
    const TestCachePtr good =
        TestCache::createInstance(file.path(), false, true, testMaxItem, testMaxLists, testMaxStorage);
    ASSERT_NE(good, nullptr);
    EXPECT_NE(good->getCopy(key(1)), nullptr) << "a usable file is kept";
    EXPECT_EQ(TestCache::createInstance(file.path() + "/below", false, true, 1, 1, page), nullptr);
}

// ---- records

TEST_F(QelCacheLogicTest, FirstInsertTakesTheDeclaredSlotAndTheSecondMakesABlockOf52Bytes) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(20 + file.word(20), 4064U) << "the snapshot didn't move";
    EXPECT_EQ(file.word(4068), 1U);
    EXPECT_EQ(file.word(4072), 0U);
    EXPECT_EQ(file.word(8), 96U + 104) << "a head and 92 bytes, rounded up";
    ASSERT_EQ(cache->insert(key(2), TestValue(key(2))), 0);
    const unsigned snapshot = 20 + file.word(20);
    EXPECT_NE(snapshot, 4064U);
    EXPECT_EQ(file.word(snapshot - 4), 8U) << "52 bytes and a head, rounded up";
    EXPECT_EQ(file.word(snapshot + 4), 2U);
    EXPECT_EQ(file.word(snapshot + 8), 0U);
    EXPECT_EQ(file.word(8), 56U + 64 + 2 * 104) << "the old block was given back";
    EXPECT_EQ(cache->getTotalAllocatedSize(), 56U + 64 + 2 * 104);
    EXPECT_EQ(cache->getAchiveableSize(), 56U + 64 + 2 * 104);
    expectClean();
}

TEST_F(QelCacheLogicTest, RecordComesBackAsItWasPutIn) {
    const TestCachePtr cache = attach(file);
    const TestValue value(key(7), 3, 123);
    ASSERT_EQ(cache->insert(key(7), value), 0);
    const auto copy = cache->getCopy(key(7));
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(value.equals(copy));
    const TestListPtr list = cache->getList();
    ASSERT_NE(list, nullptr);
    ASSERT_NE(list->get(key(7)), nullptr);
    EXPECT_TRUE(value.equals(list->get(key(7))));
    EXPECT_EQ(list->get(key(8)), nullptr);
    EXPECT_EQ(cache->getCopy(key(8)), nullptr);
    EXPECT_EQ(list->size(), 1U);
}

TEST_F(QelCacheLogicTest, InsertOfAKeyThatExistsIsMinusFiveAndAllocatesNothing) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1), 1)), 0);
    const std::string before = file.read();
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1), 2)), -5);
    EXPECT_EQ(file.read(), before);
}

TEST_F(QelCacheLogicTest, UpdateAndRemoveOfAnAbsentKeyAreMinusSix) {
    const TestCachePtr cache = attach(file);
    const std::string before = file.read();
    EXPECT_EQ(cache->update(key(1), TestValue(key(1))), -6);
    EXPECT_EQ(cache->remove(key(1)), -6);
    EXPECT_EQ(file.read(), before);
}

TEST_F(QelCacheLogicTest, UpdateReplacesARecordByOneOfAnyLength) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1), 1, 500)), 0);
    ASSERT_EQ(cache->insert(key(2), TestValue(key(2))), 0);
    for (const unsigned extra : {0U, 5000U, 20U}) {
        const TestValue value(key(1), 2, extra);
        ASSERT_EQ(cache->update(key(1), value), 0);
        EXPECT_TRUE(value.equals(cache->getCopy(key(1))));
        expectClean();
    }
    EXPECT_TRUE(TestValue(key(2)).equals(cache->getCopy(key(2))));
}

TEST_F(QelCacheLogicTest, RemovedSlotIsUsedAgain) {
    const TestCachePtr cache = attach(file);
    for (unsigned i = 1; i <= 3; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i))), 0);
    const unsigned snapshot = 20 + file.word(20);
    ASSERT_EQ(cache->remove(key(2)), 0);
    EXPECT_EQ(cache->getCopy(key(2)), nullptr);
    EXPECT_EQ(file.word(snapshot + 8), 1U) << "reserved";
    ASSERT_EQ(cache->insert(key(9), TestValue(key(9))), 0);
    EXPECT_EQ(20 + file.word(20), snapshot) << "no new block";
    EXPECT_EQ(file.word(snapshot + 8), 0U);
    for (const unsigned i : {1U, 3U, 9U}) {
        ASSERT_NE(cache->getCopy(key(i)), nullptr);
        ASSERT_EQ(cache->remove(key(i)), 0);
    }
    EXPECT_EQ(cache->getList()->size(), 0U);
    expectClean();
}

TEST_F(QelCacheLogicTest, RecordAboveTheLimitIsMinusThreeAndTheCacheWorksOn) {
    const TestCachePtr cache = attach(file, testMaxStorage, 0x1000000);
    const unsigned largest = 0x1000000 - TestRecord::declaredSize;
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1), 0, largest + 1)), -3);
    EXPECT_EQ(file.size(), page);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(cache->update(key(1), TestValue(key(1), 0, largest + 1)), -3);
    EXPECT_TRUE(TestValue(key(1)).equals(cache->getCopy(key(1))));
    const TestValue value(key(1), 0, largest);
    EXPECT_EQ(cache->update(key(1), value), 0) << "the limit itself is accepted";
    EXPECT_TRUE(value.equals(cache->getCopy(key(1))));
    expectClean();
}

TEST_F(QelCacheLogicTest, SnapshotMadeForARefusedRecordStays) {
    const TestCachePtr cache = attach(file, testMaxStorage, 100);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(cache->insert(key(2), TestValue(key(2), 0, 9)), -3);
    const unsigned snapshot = 20 + file.word(20);
    EXPECT_EQ(file.word(snapshot + 4), 1U);
    EXPECT_EQ(file.word(snapshot + 8), 1U) << "room for the next one";
    EXPECT_EQ(cache->insert(key(2), TestValue(key(2), 0, 8)), 0);
    EXPECT_EQ(20 + file.word(20), snapshot);
    expectClean();
}

/// A value whose bytes are told by a function.
struct Source {
    std::function<int(const void**, unsigned&, const void*)> tell;
    int getBuffer(const void** buffer, unsigned& length, const void* old) const { return tell(buffer, length, old); }
};

TEST_F(QelCacheLogicTest, SourceIsShownTheOldRecordOnUpdateOnly) {
    const TestCachePtr cache = attach(file);
    const TestValue value(key(1), 5, 40);
    const void* seen = &value;
    const Source source{[&](const void** buffer, unsigned& length, const void* old) {
        EXPECT_EQ(length, 0U);
        seen = old;
        if (old) {
            EXPECT_TRUE(value.equals(static_cast<const TestRecord*>(old)));
        }
        return value.getBuffer(buffer, length, old);
    }};
    ASSERT_EQ(cache->insert(key(1), source), 0);
    EXPECT_EQ(seen, nullptr);
    ASSERT_EQ(cache->update(key(1), source), 0);
    EXPECT_NE(seen, nullptr);
}

TEST_F(QelCacheLogicTest, SourceThatUsesTheCacheIsRefusedInsteadOfWaitingForItself) {
    const TestCachePtr cache = attach(file);
    const TestCachePtr second = attach(file);
    const TestValue value(key(1));
    const Source source{[&](const void** buffer, unsigned& length, const void* old) {
        EXPECT_EQ(cache->insert(key(2), TestValue(key(2))), -9);
        EXPECT_EQ(second->insert(key(2), TestValue(key(2))), -9);
        EXPECT_EQ(cache->getList(), nullptr);
        return value.getBuffer(buffer, length, old);
    }};
    EXPECT_EQ(cache->insert(key(1), source), 0);
    EXPECT_EQ(cache->insert(key(2), TestValue(key(2))), 0);
}

TEST_F(QelCacheLogicTest, SourceThatForksFindsTheChildDetached) {
    const TestCachePtr cache = attach(file);
    const TestValue value(key(1));
    pid_t child = -1;
    const Source source{[&](const void** buffer, unsigned& length, const void* old) {
        child = fork();
        return value.getBuffer(buffer, length, old);
    }};
    const int result = cache->insert(key(1), source);
    if (child == 0)
        _exit(result == cacheNotAttached ? 0 : 1);
    EXPECT_EQ(result, 0);
    int status = 1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    expectClean();
}

TEST_F(QelCacheLogicTest, ShortestRecordHasTheDeclaredSize) {
    const TestValue value(key(1));
    const auto ofLength = [&](unsigned told) {
        return Source{[&value, told](const void** buffer, unsigned& length, const void*) {
            static_cast<void>(value.getBuffer(buffer, length, nullptr));
            length = told;
            return 0;
        }};
    };
    // A death test forks, so each statement attaches for itself.
    EXPECT_DEATH(static_cast<void>(attach(file)->insert(key(1), ofLength(91))), "core/src/QelCore/QelCacheLogic");
    EXPECT_EQ(attach(file)->insert(key(1), ofLength(92)), 0);
    const Source failing{[](const void**, unsigned&, const void*) { return -1; }};
    EXPECT_DEATH(static_cast<void>(attach(file)->update(key(1), failing)), "core/src/QelCore/QelCacheLogic");
    const Source withoutBytes{[](const void**, unsigned& length, const void*) { return length = 100, 0; }};
    EXPECT_DEATH(static_cast<void>(attach(file)->update(key(1), withoutBytes)), "core/src/QelCore/QelCacheLogic");
}

TEST_F(QelCacheLogicTest, CopyOfARecordThatTellsLessThanTheDeclaredSizeIsFatal) {
    ASSERT_EQ(attach(file)->insert(key(1), TestValue(key(1))), 0);
    const unsigned record = 4076 + 16 + file.word(4076 + 16);
    file.setWord(record + 4, static_cast<std::uint32_t>(-1));
    EXPECT_DEATH(static_cast<void>(attach(file)->getCopy(key(1))), "core/src/QelCore/QelCacheLogic");
}

TEST_F(QelCacheLogicTest, CopyIsPrivate) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    const auto copy = cache->getCopy(key(1));
    const std::string before = file.read();
    copy->version = 99;
    EXPECT_EQ(file.read(), before);
    ASSERT_EQ(cache->remove(key(1)), 0);
    EXPECT_EQ(copy->version, 99U);
}

// ---- lists

TEST_F(QelCacheLogicTest, ListHoldsAReferenceToTheSnapshotAsLongAsItLives) {
    const TestCachePtr cache = attach(file);
    TestListPtr list = cache->getList();
    EXPECT_EQ(file.word(4064), 2U);
    TestListPtr other = cache->getList();
    EXPECT_EQ(file.word(4064), 3U);
    list.reset();
    EXPECT_EQ(file.word(4064), 2U);
    other.reset();
    EXPECT_EQ(file.word(4064), 1U);
}

TEST_F(QelCacheLogicTest, ReaderKeepsTheOldValueThatAnUpdateReplaced) {
    const TestCachePtr cache = attach(file);
    const TestValue before(key(1), 1, 30);
    const TestValue after(key(1), 2, 60);
    ASSERT_EQ(cache->insert(key(1), before), 0);
    const TestListPtr list = cache->getList();
    ASSERT_EQ(cache->update(key(1), after), 0);
    EXPECT_TRUE(after.equals(cache->getCopy(key(1))));
    EXPECT_TRUE(before.equals(list->get(key(1))));
    EXPECT_TRUE(after.equals(cache->getList()->get(key(1))));
}

TEST_F(QelCacheLogicTest, ReaderSeesNeitherInsertsNorRemovals) {
    const TestCachePtr cache = attach(file);
    for (const unsigned i : {1U, 2U})
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i))), 0);
    TestListPtr list = cache->getList();
    ASSERT_EQ(cache->insert(key(3), TestValue(key(3))), 0);
    ASSERT_EQ(cache->remove(key(1)), 0);
    EXPECT_EQ(keysOf(list), (std::vector{key(1), key(2)}));
    EXPECT_EQ(keysOf(cache->getList()), (std::vector{key(2), key(3)}));
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1))));
    list.reset();
    expectClean();
}

TEST_F(QelCacheLogicTest, LastListOfAnOldSnapshotFreesTheRecordsThatOnlyItListed) {
    const TestCachePtr cache = attach(file);
    for (const unsigned i : {1U, 2U, 3U})
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i))), 0);
    TestListPtr one = cache->getList();
    TestListPtr two = cache->getList();
    ASSERT_EQ(cache->update(key(1), TestValue(key(1), 2)), 0);
    ASSERT_EQ(cache->remove(key(2)), 0);
    const unsigned held = cache->getTotalAllocatedSize();
    one.reset();
    EXPECT_EQ(cache->getTotalAllocatedSize(), held) << "the other list still holds it";
    EXPECT_TRUE(TestValue(key(2)).equals(two->get(key(2))));
    two.reset();
    // The snapshot's block of 72 bytes with its head, and two records of 104.
    EXPECT_EQ(cache->getTotalAllocatedSize(), held - 80 - 2 * 104);
    EXPECT_TRUE(TestValue(key(1), 2).equals(cache->getCopy(key(1))));
    EXPECT_TRUE(TestValue(key(3)).equals(cache->getCopy(key(3))));
    expectClean();
}

TEST_F(QelCacheLogicTest, ChainOfSnapshotsMayBeGivenBackInAnyOrder) {
    std::mt19937 random(7);
    const TestCachePtr cache = attach(file);
    std::vector<std::pair<TestListPtr, unsigned>> lists;
    ASSERT_EQ(cache->insert(key(0), TestValue(key(0))), 0);
    for (unsigned version = 1; version <= 2000; ++version) {
        const unsigned id = 1 + below(random, 20);
        if (cache->update(key(id), TestValue(key(id), version, below(random, 300))) == -6) {
            ASSERT_EQ(cache->insert(key(id), TestValue(key(id), version, below(random, 300))), 0);
        } else if (below(random, 4) == 0) {
            ASSERT_EQ(cache->remove(key(id)), 0);
        }
        ASSERT_EQ(cache->update(key(0), TestValue(key(0), version)), 0);
        if (lists.size() == 16 || (!lists.empty() && below(random, 3) == 0))
            lists.erase(lists.begin() + static_cast<int>(below(random, static_cast<unsigned>(lists.size()))));
        lists.emplace_back(cache->getList(), version);
        for (const auto& [list, seen] : lists)
            ASSERT_TRUE(TestValue(key(0), seen).equals(list->get(key(0))));
    }
    EXPECT_THAT(findingsIn(file, false), IsEmpty());
    lists.clear();
    expectClean();
}

TEST_F(QelCacheLogicTest, SeventeenthListIsNullAndADroppedOneMakesRoom) {
    const TestCachePtr cache = attach(file);
    std::vector<TestListPtr> lists;
    for (int i = 0; i < 16; ++i) {
        lists.push_back(cache->getList());
        ASSERT_NE(lists.back(), nullptr);
    }
    EXPECT_EQ(cache->getList(), nullptr);
    EXPECT_NE(attach(file)->getList(), nullptr) << "each object counts for itself";
    lists.pop_back();
    EXPECT_NE(cache->getList(), nullptr);
}

TEST_F(QelCacheLogicTest, ListWithoutACacheIsEmpty) {
    const TestListPtr list(new TestList(nullptr));
    EXPECT_FALSE(list->isAccessible());
    EXPECT_EQ(list->begin(), nullptr);
    EXPECT_EQ(list->end(), nullptr);
    EXPECT_EQ(list->size(), 0U);
    EXPECT_EQ(list->get(key(1)), nullptr);
}

TEST_F(QelCacheLogicTest, ListOfADerivedClassIsMadeAsAsked) {
    struct Derived : TestList {
        using TestList::TestList;
        int mark = 5;
    };
    const TestCachePtr cache = attach(file);
    const auto list = cache->getList<boost::intrusive_ptr<Derived>>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->mark, 5);
}

TEST_F(QelCacheLogicTest, ListKeepsTheCacheAlive) {
    TestListPtr list;
    {
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
        list = cache->getList();
    }
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1))));
    list.reset();
    expectClean();
}

TEST_F(QelCacheLogicTest, DetachedCacheLeavesTheReferenceOfItsListInTheFile) {
    const TestCachePtr cache = attach(file);
    TestListPtr list = cache->getList();
    EXPECT_EQ(cache->reinit(), 0);
    EXPECT_FALSE(cache->isAccessible());
    list.reset();
    EXPECT_EQ(file.word(4064), 2U);
}

TEST_F(QelCacheLogicTest, ListOfAReplacedFileIsNotGivenBackToTheNewOne) {
    const TestCachePtr cache = attach(file);
    TestListPtr list = cache->getList();
    ASSERT_EQ(removeFile(file.path()), 0);
    ASSERT_EQ(cache->initialize(true, true), 0);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(list->size(), 0U);
    list.reset();
    expectClean();
    EXPECT_EQ(cache->getList()->size(), 1U);
}

// ---- limits

TEST_F(QelCacheLogicTest, FullFileIsMinusTenAndRemovalStillWorks) {
    const TestCachePtr cache = attach(file, page);
    unsigned count = 0;
    int result = 0;
    while ((result = cache->insert(key(count), TestValue(key(count)))) == 0)
        ++count;
    EXPECT_EQ(result, -10);
    EXPECT_GT(count, 20U);
    EXPECT_EQ(file.size(), page);
    expectClean();
    EXPECT_EQ(cache->update(key(0), TestValue(key(0), 1, 2000)), -10);
    EXPECT_TRUE(TestValue(key(0)).equals(cache->getCopy(key(0))));
    {
        const TestListPtr list = cache->getList();
        EXPECT_EQ(cache->remove(key(0)), -10) << "a copy of the array has no room";
        EXPECT_EQ(cache->update(key(0), TestValue(key(0), 1)), -10);
        EXPECT_NE(cache->getCopy(key(0)), nullptr);
        EXPECT_EQ(list->size(), count);
    }
    expectClean();
    for (unsigned i = 0; i < count; ++i)
        ASSERT_EQ(cache->remove(key(i)), 0);
    expectClean();
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
}

TEST_F(QelCacheLogicTest, FullDiskIsMinusTenAndLosesNothing) {
    EXPECT_EQ(inChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{3 * page, 3 * page};
                  if (setrlimit(RLIMIT_FSIZE, &limit))
                      return 1;
                  const TestCachePtr cache = attach(file);
                  unsigned count = 0;
                  int result = 0;
                  while ((result = cache->insert(key(count), TestValue(key(count), 0, 500))) == 0)
                      ++count;
                  if (result != -10 || count < 5)
                      return 2;
                  for (unsigned i = 0; i < count; ++i)
                      if (!TestValue(key(i), 0, 500).equals(cache->getCopy(key(i))))
                          return 3;
                  return cache->remove(key(0)) ? 4 : cache->insert(key(0), TestValue(key(0))) ? 5 : 0;
              }),
              0);
    expectClean();
}

TEST_F(QelCacheLogicTest, FullDiskAtTheStartIsMinusTwo) {
    EXPECT_EQ(inChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{1, 1};
                  return setrlimit(RLIMIT_FSIZE, &limit) ? 1 : makeCache(file)->initialize(true, true) == -2 ? 0 : 2;
              }),
              0);
}

// ---- growth

TEST_F(QelCacheLogicTest, FileGrowsByAFifthOrByRoomForFiveRecords) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1), 0, 5000 - 92)), 0);
    EXPECT_EQ(file.size(), (4096U + 5 * 5000 + 4095) / 4096 * 4096);
    for (unsigned i = 2; file.size() == 32768; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), 0, 1000)), 0);
    EXPECT_EQ(file.size(), (32768U + 32768 / 5 + 4095) / 4096 * 4096);
    EXPECT_EQ(file.word(12), file.size());
    expectClean();
}

/// What a change does, whether a reader holds the snapshot, and where the file grew meanwhile.
struct GrowthCase {
    const char* name;
    bool held;
    std::function<int(TestCache&, const Source&)> change;
    bool growsForSnapshot;
    bool growsForRecord;
    unsigned keyWritten;
    std::vector<unsigned> keysAfter;
};

void PrintTo(const GrowthCase& growth, std::ostream* out) {
    *out << growth.name;
}

class QelCacheGrowthTest : public testing::TestWithParam<GrowthCase> {};

TEST_P(QelCacheGrowthTest, EveryAddressIsRebasedWhereverTheFileGrows) {
    const GrowthCase& growth = GetParam();
    bool grewForSnapshot = false;
    bool grewForRecord = false;
    // Key 2 fills the first page to every degree, so that each allocation is the one that doesn't fit at some degree.
    for (unsigned filler = 3000; filler < 3960; filler += 8) {
        const TempFile file;
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
        ASSERT_EQ(cache->insert(key(2), TestValue(key(2), 0, filler - 92)), 0);
        const std::uint64_t before = file.size();
        if (before != page)
            break;
        TestListPtr list = growth.held ? cache->getList() : nullptr;
        std::uint64_t between = 0;
        const TestValue value(key(9), 1, 100);
        const Source source{[&](const void** buffer, unsigned& length, const void* old) {
            between = file.size();
            return value.getBuffer(buffer, length, old);
        }};
        ASSERT_EQ(growth.change(*cache, source), 0);
        const std::uint64_t after = file.size();
        const bool forSnapshot = (between ? between : after) != before;
        grewForSnapshot |= forSnapshot;
        grewForRecord |= !forSnapshot && after != before;

        std::vector<QelGUIDBase> expected;
        for (const unsigned number : growth.keysAfter)
            expected.push_back(key(number));
        EXPECT_EQ(keysOf(cache->getList()), expected);
        EXPECT_TRUE(TestValue(key(2), 0, filler - 92).equals(cache->getCopy(key(2))));
        if (between != 0) {
            EXPECT_TRUE(value.equals(cache->getCopy(key(growth.keyWritten))));
        }
        if (list) {
            EXPECT_EQ(keysOf(list), (std::vector{key(1), key(2)}));
            EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1))));
            EXPECT_TRUE(TestValue(key(2), 0, filler - 92).equals(list->get(key(2))));
            list.reset();
        }
        EXPECT_THAT(findingsIn(file), IsEmpty()) << "filler " << filler;
        if (HasFailure())
            return;
    }
    EXPECT_EQ(grewForSnapshot, growth.growsForSnapshot);
    EXPECT_EQ(grewForRecord, growth.growsForRecord);
}

const auto insertThird = [](TestCache& cache, const Source& source) { return cache.insert(key(3), source); };
const auto updateFirst = [](TestCache& cache, const Source& source) { return cache.update(key(1), source); };
const auto removeFirst = [](TestCache& cache, const Source&) { return cache.remove(key(1)); };

INSTANTIATE_TEST_SUITE_P(Changes, QelCacheGrowthTest,
                         testing::Values(GrowthCase{"insert", false, insertThird, true, true, 3, {1, 2, 3}},
                                         GrowthCase{
                                             "insert with a reader", true, insertThird, true, true, 3, {1, 2, 3}},
                                         GrowthCase{"update", false, updateFirst, false, true, 1, {1, 2}},
                                         GrowthCase{"update with a reader", true, updateFirst, true, true, 1, {1, 2}},
                                         GrowthCase{"remove", false, removeFirst, false, false, 0, {2}},
                                         GrowthCase{"remove with a reader", true, removeFirst, true, false, 0, {2}}));

TEST_F(QelCacheLogicTest, ListsOfManyMappingsReadOnWhileTheFileGrows) {
    const TestCachePtr cache = attach(file);
    std::vector<TestListPtr> lists;
    for (unsigned i = 0; i < 600; ++i) {
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), 0, 200)), 0);
        if (i % 50 == 49 && lists.size() < 12)
            lists.push_back(cache->getList());
    }
    for (std::size_t i = 0; i < lists.size(); ++i) {
        ASSERT_EQ(lists[i]->size(), 50 * (i + 1));
        for (const auto& record : *lists[i])
            ASSERT_TRUE(TestValue(record.key, 0, 200).equals(record.data.get()));
    }
    EXPECT_THAT(findingsIn(file, false), IsEmpty());
    lists.clear();
    expectClean();
}

// ---- two objects, as in two processes

TEST_F(QelCacheLogicTest, LateCacheMapsAllOfAGrownFile) {
    const TestCachePtr cache = attach(file);
    for (unsigned i = 0; i < 300; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), i, 100)), 0);
    const TestCachePtr late = attach(file);
    const TestListPtr list = late->getList();
    ASSERT_EQ(list->size(), 300U);
    for (unsigned i = 0; i < 300; ++i)
        ASSERT_TRUE(TestValue(key(i), i, 100).equals(list->get(key(i))));
}

TEST_F(QelCacheLogicTest, OtherCacheFollowsAGrowthAtItsNextLockAndItsListsReadOn) {
    const TestCachePtr grower = attach(file);
    const TestCachePtr other = attach(file);
    ASSERT_EQ(grower->insert(key(1), TestValue(key(1))), 0);
    TestListPtr list = other->getList();
    ASSERT_EQ(grower->insert(key(2), TestValue(key(2), 0, 20000)), 0);
    ASSERT_EQ(grower->update(key(1), TestValue(key(1), 1)), 0);
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1))));
    EXPECT_TRUE(TestValue(key(2), 0, 20000).equals(other->getCopy(key(2))));
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1)))) << "still in the old mapping";
    EXPECT_EQ(list->size(), 1U);
    list.reset();
    EXPECT_EQ(other->insert(key(3), TestValue(key(3))), 0);
    EXPECT_TRUE(TestValue(key(3)).equals(grower->getCopy(key(3))));
    expectClean();
}

TEST_F(QelCacheLogicTest, ThreadsShareOneCacheWhileItGrows) {
    const TestCachePtr cache = attach(file);
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 4; ++thread)
        threads.emplace_back([&, thread] {
            std::mt19937 random(thread);
            for (unsigned i = 0; i < 250; ++i) {
                const QelGUIDBase id = key(thread * 1000 + i);
                const TestValue value(id, i, below(random, 400));
                ASSERT_EQ(cache->insert(id, value), 0);
                const TestListPtr list = cache->getList();
                ASSERT_NE(list, nullptr);
                ASSERT_TRUE(value.equals(list->get(id)));
                if (i % 3 == 0) {
                    ASSERT_EQ(cache->remove(id), 0);
                } else {
                    ASSERT_EQ(cache->update(id, TestValue(id, i + 1, below(random, 400))), 0);
                }
                ASSERT_TRUE(value.equals(list->get(id)));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(cache->getList()->size(), 4U * 166);
    expectClean();
}

TEST_F(QelCacheLogicTest, RandomChangesAgreeWithAModel) {
    std::mt19937 random(3);
    TestCachePtr cache = attach(file);
    std::map<QelGUIDBase, TestValue> model;
    for (unsigned step = 1; step <= 5000; ++step) {
        const QelGUIDBase id = key(below(random, 100));
        const TestValue value(id, step, below(random, below(random, 50) ? 400 : 8000));
        const bool present = model.contains(id);
        switch (below(random, 3)) {
        case 0:
            ASSERT_EQ(cache->insert(id, value), present ? -5 : 0);
            model.emplace(id, value);
            break;
        case 1:
            ASSERT_EQ(cache->update(id, value), present ? 0 : -6);
            if (present)
                model.insert_or_assign(id, value);
            break;
        default:
            ASSERT_EQ(cache->remove(id), present ? 0 : -6);
            model.erase(id);
        }
        if (step % 500 == 0) {
            cache = attach(file);
            const TestListPtr list = cache->getList();
            ASSERT_EQ(list->size(), model.size());
            for (const auto& [known, expected] : model)
                ASSERT_TRUE(expected.equals(list->get(known)));
            ASSERT_THAT(findingsIn(file, false), IsEmpty());
        }
    }
    expectClean();
}

} // namespace
} // namespace Qel
