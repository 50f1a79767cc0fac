#include "QelCore/QelCacheLogic.h"

#include <map>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "QelCore/QelFiles.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

using testing::IsEmpty;

using QelCacheLogicTest = CacheFileTest;

// ---- records

TEST_F(QelCacheLogicTest, FirstInsertUsesTheDeclaredSlotAndTheSecondAllocates52Bytes) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(20 + file.word(20), 4064U) << "the snapshot has not moved";
    EXPECT_EQ(file.word(4068), 1U);
    EXPECT_EQ(file.word(4072), 0U);
    EXPECT_EQ(file.word(8), 96U + 104) << "a block header and 92 bytes, rounded up";
    ASSERT_EQ(cache->insert(key(2), TestValue(key(2))), 0);
    const unsigned snapshot = 20 + file.word(20);
    EXPECT_NE(snapshot, 4064U);
    EXPECT_EQ(file.word(snapshot - 4), 8U) << "52 bytes and a block header, rounded up";
    EXPECT_EQ(file.word(snapshot + 4), 2U);
    EXPECT_EQ(file.word(snapshot + 8), 0U);
    EXPECT_EQ(file.word(8), 56U + 64 + 2 * 104) << "the old block was freed";
    EXPECT_EQ(cache->getTotalAllocatedSize(), 56U + 64 + 2 * 104);
    EXPECT_EQ(cache->getAchiveableSize(), 56U + 64 + 2 * 104);
    expectClean();
}

TEST_F(QelCacheLogicTest, InsertedRecordIsReturnedUnchanged) {
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

TEST_F(QelCacheLogicTest, InsertOfExistingKeyReturnsMinus5AndAllocatesNothing) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1), 1)), 0);
    const std::string before = file.read();
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1), 2)), -5);
    EXPECT_EQ(file.read(), before);
}

TEST_F(QelCacheLogicTest, UpdateAndRemoveOfMissingKeyReturnMinus6) {
    const TestCachePtr cache = attach(file);
    const std::string before = file.read();
    EXPECT_EQ(cache->update(key(1), TestValue(key(1))), -6);
    EXPECT_EQ(cache->remove(key(1)), -6);
    EXPECT_EQ(file.read(), before);
}

TEST_F(QelCacheLogicTest, UpdateReplacesRecordByOneOfAnyLength) {
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

TEST_F(QelCacheLogicTest, RemovedSlotIsReused) {
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

TEST_F(QelCacheLogicTest, RecordAboveTheLimitReturnsMinus3AndTheCacheStillWorks) {
    const TestCachePtr cache = attach(file, testMaxStorage, 0x1000000);
    const unsigned largest = 0x1000000 - TestRecord::declaredSize;
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1), 0, largest + 1)), -3);
    EXPECT_EQ(file.size(), page);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(cache->update(key(1), TestValue(key(1), 0, largest + 1)), -3);
    EXPECT_TRUE(TestValue(key(1)).equals(cache->getCopy(key(1))));
    const TestValue value(key(1), 0, largest);
    EXPECT_EQ(cache->update(key(1), value), 0) << "a record of exactly the limit is accepted";
    EXPECT_TRUE(value.equals(cache->getCopy(key(1))));
    expectClean();
}

TEST_F(QelCacheLogicTest, CopyMadeForRejectedRecordRemains) {
    const TestCachePtr cache = attach(file, testMaxStorage, 100);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    EXPECT_EQ(cache->insert(key(2), TestValue(key(2), 0, 9)), -3);
    const unsigned snapshot = 20 + file.word(20);
    EXPECT_EQ(file.word(snapshot + 4), 1U);
    EXPECT_EQ(file.word(snapshot + 8), 1U) << "the slot is free";
    EXPECT_EQ(cache->insert(key(2), TestValue(key(2), 0, 8)), 0);
    EXPECT_EQ(20 + file.word(20), snapshot);
    expectClean();
}

TEST_F(QelCacheLogicTest, SourceReceivesTheOldRecordOnUpdateOnly) {
    const TestCachePtr cache = attach(file);
    const TestValue value(key(1), 5, 40);
    const void* seen = &value;
    const TestSource source{[&](const void** buffer, unsigned& length, const void* old) {
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

TEST_F(QelCacheLogicTest, SourceThatUsesTheCacheFailsInsteadOfDeadlocking) {
    const TestCachePtr cache = attach(file);
    const TestCachePtr second = attach(file);
    const TestValue value(key(1));
    const TestSource source{[&](const void** buffer, unsigned& length, const void* old) {
        EXPECT_EQ(cache->insert(key(2), TestValue(key(2))), -9);
        EXPECT_EQ(second->insert(key(2), TestValue(key(2))), -9);
        EXPECT_EQ(cache->getList(), nullptr);
        return value.getBuffer(buffer, length, old);
    }};
    EXPECT_EQ(cache->insert(key(1), source), 0);
    EXPECT_EQ(cache->insert(key(2), TestValue(key(2))), 0);
}

TEST_F(QelCacheLogicTest, ChildForkedByASourceIsDetached) {
    const TestCachePtr cache = attach(file);
    const TestValue value(key(1));
    pid_t child = -1;
    const TestSource source{[&](const void** buffer, unsigned& length, const void* old) {
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
    const auto ofLength = [&](unsigned returned) {
        return TestSource{[&value, returned](const void** buffer, unsigned& length, const void*) {
            static_cast<void>(value.getBuffer(buffer, length, nullptr));
            length = returned;
            return 0;
        }};
    };
    // A death test forks, so each statement attaches its own cache.
    EXPECT_DEATH(static_cast<void>(attach(file)->insert(key(1), ofLength(91))), "core/src/QelCore/QelCacheLogic");
    EXPECT_EQ(attach(file)->insert(key(1), ofLength(92)), 0);
    const TestSource failing{[](const void**, unsigned&, const void*) { return -1; }};
    EXPECT_DEATH(static_cast<void>(attach(file)->update(key(1), failing)), "core/src/QelCore/QelCacheLogic");
    const TestSource withoutBytes{[](const void**, unsigned& length, const void*) { return length = 100, 0; }};
    EXPECT_DEATH(static_cast<void>(attach(file)->update(key(1), withoutBytes)), "core/src/QelCore/QelCacheLogic");
}

TEST_F(QelCacheLogicTest, CopyOfRecordShorterThanTheDeclaredSizeIsFatal) {
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

TEST_F(QelCacheLogicTest, ListHoldsReferenceToSnapshotForItsLifetime) {
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

TEST_F(QelCacheLogicTest, ReaderKeepsTheValueReplacedByAnUpdate) {
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

TEST_F(QelCacheLogicTest, CopyForUpdateOrRemovalHasNoFreeSlot) {
    const TestCachePtr cache = attach(file);
    for (const unsigned i : {1U, 2U, 3U})
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i))), 0);
    const auto units = [&] { return file.word(20 + file.word(20) - 4); };
    const auto reserved = [&] { return file.word(20 + file.word(20) + 8); };
    constexpr unsigned unitsForThree = 10; // a block header, 12 bytes and three entries of 20
    {
        const TestListPtr list = cache->getList();
        ASSERT_EQ(cache->update(key(1), TestValue(key(1), 1)), 0);
        EXPECT_EQ(units(), unitsForThree);
        EXPECT_EQ(reserved(), 0U);
    }
    const TestListPtr list = cache->getList();
    ASSERT_EQ(cache->remove(key(2)), 0);
    EXPECT_EQ(units(), unitsForThree);
    EXPECT_EQ(reserved(), 1U) << "the slot of the removed record";
}

TEST_F(QelCacheLogicTest, DamagedBlockIsFatalBeforeAllocatedBytesChange) {
    {
        const TestCachePtr cache = attach(file);
        for (const unsigned i : {1U, 2U})
            ASSERT_EQ(cache->insert(key(i), TestValue(key(i))), 0);
    }
    const unsigned entry = 20 + file.word(20) + 12;
    const unsigned record = entry + 16 + file.word(entry + 16);
    // A block that extends past the end of the heap but not beyond the allocated bytes.
    file.setWord(record - 4, (page - record) / 8 + 2);
    file.setWord(8, page);
    EXPECT_DEATH(static_cast<void>(attach(file)->remove(key(1))), "core/src/QelCore/QelSharedMemoryManager");
    EXPECT_EQ(file.word(8), page);
}

TEST_F(QelCacheLogicTest, DestroyingCacheWhoseFileCannotBeLockedIsFatal) {
    QelMappedMemoryManager::Storage storage(file.path());
    EXPECT_DEATH(
        {
            TestCachePtr cache = attach(file);
            // This thread already holds the lock, so the destructor cannot acquire it.
            static_cast<void>(storage.getStorage(page, nullptr));
            static_cast<void>(storage.lock());
            cache.reset();
        },
        "core/src/QelCore/QelCacheLogic");
}

TEST_F(QelCacheLogicTest, LastListOfOldSnapshotFreesItsRecords) {
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
    // The block of the snapshot, 72 bytes and a header, and two records of 104.
    EXPECT_EQ(cache->getTotalAllocatedSize(), held - 80 - 2 * 104);
    EXPECT_TRUE(TestValue(key(1), 2).equals(cache->getCopy(key(1))));
    EXPECT_TRUE(TestValue(key(3)).equals(cache->getCopy(key(3))));
    expectClean();
}

TEST_F(QelCacheLogicTest, SnapshotsCanBeReleasedInAnyOrder) {
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

TEST_F(QelCacheLogicTest, SeventeenthListIsNullUntilOneIsReleased) {
    const TestCachePtr cache = attach(file);
    std::vector<TestListPtr> lists;
    for (int i = 0; i < 16; ++i) {
        lists.push_back(cache->getList());
        ASSERT_NE(lists.back(), nullptr);
    }
    EXPECT_EQ(cache->getList(), nullptr);
    EXPECT_NE(attach(file)->getList(), nullptr) << "the limit applies per cache object";
    lists.pop_back();
    EXPECT_NE(cache->getList(), nullptr);
}

TEST_F(QelCacheLogicTest, ListWithoutCacheIsEmpty) {
    const TestListPtr list(new TestList(nullptr));
    EXPECT_FALSE(list->isAccessible());
    EXPECT_EQ(list->begin(), nullptr);
    EXPECT_EQ(list->end(), nullptr);
    EXPECT_EQ(list->size(), 0U);
    EXPECT_EQ(list->get(key(1)), nullptr);
}

TEST_F(QelCacheLogicTest, CreatesListOfDerivedClass) {
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

TEST_F(QelCacheLogicTest, DetachedCacheLeavesReferenceOfItsListInTheFile) {
    const TestCachePtr cache = attach(file);
    TestListPtr list = cache->getList();
    EXPECT_EQ(cache->reinit(), 0);
    EXPECT_FALSE(cache->isAccessible());
    list.reset();
    EXPECT_EQ(file.word(4064), 2U);
}

TEST_F(QelCacheLogicTest, ListOfReplacedFileIsNotReleasedInTheNewFile) {
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

} // namespace
} // namespace Qel
