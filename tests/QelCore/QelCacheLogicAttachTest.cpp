#include "QelCore/QelCacheLogic.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/QelFiles.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

using QelCacheLogicAttachTest = CacheFileTest;

TEST_F(QelCacheLogicAttachTest, NewFileHasExpectedBytes) {
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
    EXPECT_EQ(file.word(56), static_cast<std::uint32_t>(-56)) << "the free block ends the list";
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

TEST_F(QelCacheLogicAttachTest, SecondAttachChangesNothing) {
    attach(file);
    const std::string before = file.read();
    const TestCachePtr cache = attach(file);
    EXPECT_TRUE(cache->isAccessible());
    EXPECT_EQ(file.read(), before);
}

TEST_F(QelCacheLogicAttachTest, NothingIsOpenedBeforeInitialize) {
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

TEST_F(QelCacheLogicAttachTest, UnmappableFileReturnsMinus2) {
    const TestCachePtr cache(new TestCache(file.path() + "/below", testMaxItem, testMaxLists, testMaxStorage));
    EXPECT_EQ(cache->initialize(true, true), -2);
    EXPECT_FALSE(cache->isAccessible());
}

/// A constant of the header and the result code for a wrong value.
struct WrongConstant {
    unsigned offset;
    int code;
};

class QelCacheHeaderTest : public QelCacheLogicAttachTest, public testing::WithParamInterface<WrongConstant> {};

TEST_P(QelCacheHeaderTest, WrongConstantReturnsItsCodeAndMarksTheFile) {
    attach(file);
    file.setWord(GetParam().offset, file.word(GetParam().offset) + 1);
    const std::string before = file.read();
    EXPECT_EQ(makeCache(file)->initialize(true, false), GetParam().code);
    EXPECT_EQ(file.read(), before) << "not marked without invalidate";
    const TestCachePtr cache = makeCache(file);
    EXPECT_EQ(cache->initialize(true, true), GetParam().code);
    EXPECT_FALSE(cache->isAccessible());
    EXPECT_EQ(file.word(validOffset), 0U);
    EXPECT_EQ(makeCache(file)->initialize(true, true), -14) << "the mark is checked first";
    EXPECT_EQ(makeCache(file)->initialize(true, false), -14) << "the mark is permanent";
}

INSTANTIATE_TEST_SUITE_P(Constants, QelCacheHeaderTest,
                         testing::Values(WrongConstant{32, -11}, WrongConstant{28, -12}, WrongConstant{36, -13},
                                         WrongConstant{40, -15}, WrongConstant{44, -16}));

TEST_F(QelCacheLogicAttachTest, ReturnsCodeOfFirstWrongConstant) {
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

TEST_F(QelCacheLogicAttachTest, SizeAboveFileSizeIsNotMapped) {
    attach(file);
    file.setWord(12, 4096 + 8);
    const TestCachePtr cache = makeCache(file);
    EXPECT_EQ(cache->initialize(true, false), -9);
    EXPECT_FALSE(cache->isAccessible());
    EXPECT_EQ(file.size(), 4096U) << "the file is not extended";
    EXPECT_EQ(file.word(validOffset), 0U) << "marked even without invalidate";
}

TEST_F(QelCacheLogicAttachTest, SizeAboveTheLimitIsNotMapped) {
    {
        const TestCachePtr cache = attach(file);
        EXPECT_EQ(cache->insert(key(1), TestValue(key(1), 0, 10000)), 0);
    }
    EXPECT_EQ(makeCache(file, 8192)->initialize(true, false), -9);
}

TEST_F(QelCacheLogicAttachTest, FailedLockSetsTheErrorMessage) {
    attach(file);
    file.setWord(12, 4096 + 8);
    clearErrorMessage();
    EXPECT_EQ(makeCache(file)->initialize(true, false), -9);
    EXPECT_EQ(getErrorMessage(), "cannot use '" + file.path() +
                                     "': its header specifies a size of 4104 bytes, which exceeds the file or the "
                                     "limit of the cache");
    file.setWord(12, 4096);
    file.setWord(validOffset, 1);
    QelMappedMemoryManager::Storage storage(file.path());
    ASSERT_NE(storage.getStorage(page, nullptr), nullptr);
    ASSERT_EQ(storage.lock(), 0);
    clearErrorMessage();
    EXPECT_EQ(makeCache(file)->initialize(true, false), -9) << "this thread already holds the lock";
    EXPECT_THAT(getErrorMessage(), testing::HasSubstr("cannot lock '" + file.path() + "': "));
    EXPECT_EQ(storage.unlock(), 0);
}

TEST_F(QelCacheLogicAttachTest, SnapshotWithoutReferenceIsFatal) {
    attach(file);
    file.setWord(4064, 0);
    EXPECT_DEATH(static_cast<void>(makeCache(file)->initialize(true, true)), "core/src/QelCore/QelCacheLogic");
}

TEST_F(QelCacheLogicAttachTest, SizeDamagedWhileAttachedFailsTheLock) {
    const TestCachePtr cache = attach(file);
    const std::uint32_t good = file.word(12);
    file.setWord(12, 0x7FFFF000);
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), -9);
    EXPECT_EQ(cache->update(key(1), TestValue(key(1))), -9);
    EXPECT_EQ(cache->remove(key(1)), -9);
    EXPECT_EQ(cache->getCopy(key(1)), nullptr);
    EXPECT_EQ(cache->getList(), nullptr);
    file.setWord(12, good);
    EXPECT_EQ(cache->insert(key(1), TestValue(key(1))), 0) << "the lock was released each time";
}

TEST_F(QelCacheLogicAttachTest, SnapshotOutsideTheMappingReturnsMinus8) {
    attach(file);
    const std::uint32_t good = file.word(20);
    // null, self, header, end of file, far past the end, before the start, unaligned, extending to the last bytes
    for (const std::uint32_t distance : {1U, 0U, 20U, 4096U - 20, 0x40000000U, 0xFFFFF000U, good - 4, good + 24}) {
        file.setWord(20, distance);
        EXPECT_EQ(makeCache(file)->initialize(true, false), -8) << distance;
        EXPECT_EQ(file.word(validOffset), 1U);
    }
    EXPECT_EQ(makeCache(file)->initialize(true, true), -8);
    EXPECT_EQ(file.word(validOffset), 0U);
}

TEST_F(QelCacheLogicAttachTest, SnapshotWithMoreSlotsThanItsBlockReturnsMinus8) {
    attach(file);
    for (const std::uint32_t count : {1U, 1000U, 0xFFFFFFFFU, 0x0CCCCCCDU}) {
        file.setWord(4068, count);
        EXPECT_EQ(makeCache(file)->initialize(true, false), -8) << count;
    }
    file.setWord(4068, 0);
    file.setWord(4060, 6);
    EXPECT_EQ(makeCache(file)->initialize(true, false), -8) << "the block extends past the end";
}

TEST_F(QelCacheLogicAttachTest, HalfFormattedFileIsUnusable) {
    attach(file);
    file.setWord(validOffset, 0);
    EXPECT_EQ(makeCache(file)->initialize(true, false), -14);
}

TEST_F(QelCacheLogicAttachTest, ForeignFileIsRejectedWithoutCrash) {
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

TEST_F(QelCacheLogicAttachTest, CreateInstanceAsFirstFailsOnUnusableFile) {
    attach(file);
    file.setWord(28, 0);
    EXPECT_EQ(TestCache::createInstance(file.path(), true, true, testMaxItem, testMaxLists, testMaxStorage), nullptr);
    EXPECT_EQ(file.word(validOffset), 1U) << "the file is unchanged";
    file.setWord(28, 0xCACEFE03);
    EXPECT_NE(TestCache::createInstance(file.path(), true, true, testMaxItem, testMaxLists, testMaxStorage), nullptr);
}

TEST_F(QelCacheLogicAttachTest, CreateInstanceNotAsFirstRecreatesUnusableFile) {
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

} // namespace
} // namespace Qel
