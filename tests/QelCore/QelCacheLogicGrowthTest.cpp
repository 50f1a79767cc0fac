#include "QelCore/QelCacheLogic.h"

#include <csignal>
#include <functional>
#include <map>
#include <random>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

using testing::IsEmpty;

using QelCacheLogicGrowthTest = CacheFileTest;

// ---- limits

TEST_F(QelCacheLogicGrowthTest, FullFileReturnsMinus10AndRemovalStillWorks) {
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
        EXPECT_EQ(cache->remove(key(0)), -10) << "no room for a copy of the array";
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

TEST_F(QelCacheLogicGrowthTest, FileSizeLimitReturnsMinus10AndLosesNothing) {
    EXPECT_EQ(inChild([&] {
                  std::signal(SIGXFSZ, SIG_DFL);
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

TEST_F(QelCacheLogicGrowthTest, FileSizeLimitOnAttachReturnsMinus2) {
    EXPECT_EQ(inChild([&] {
                  std::signal(SIGXFSZ, SIG_DFL);
                  const rlimit limit{1, 1};
                  return setrlimit(RLIMIT_FSIZE, &limit) ? 1 : makeCache(file)->initialize(true, true) == -2 ? 0 : 2;
              }),
              0);
}

// ---- growth

TEST_F(QelCacheLogicGrowthTest, FileGrowsByOneFifthOrByFiveRecords) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1), 0, 5000 - 92)), 0);
    EXPECT_EQ(file.size(), (4096U + 5 * 5000 + 4095) / 4096 * 4096);
    for (unsigned i = 2; file.size() == 32768; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), 0, 1000)), 0);
    EXPECT_EQ(file.size(), (32768U + 32768 / 5 + 4095) / 4096 * 4096);
    EXPECT_EQ(file.word(12), file.size());
    expectClean();
}

TEST_F(QelCacheLogicGrowthTest, FileGrowsByOneFifthOfItsSize) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(0), TestValue(key(0), 0, 80000 - 92)), 0);
    constexpr unsigned before = 99 * page;
    ASSERT_EQ(file.size(), before) << "4096 + 5 * 80000, rounded up to pages";
    for (unsigned i = 1; file.size() == before; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), 0, 10000)), 0);
    EXPECT_EQ(file.size(), 119 * page) << "a quarter would yield 124 pages, a sixth 116";
}

TEST_F(QelCacheLogicGrowthTest, FileDoesNotGrowBeyondItsLimit) {
    constexpr unsigned grown = 32768; // room for five records of 5000 bytes
    EXPECT_EQ(attach(file, grown - 1)->insert(key(1), TestValue(key(1), 0, 5000 - 92)), -10);
    EXPECT_EQ(file.size(), page);
    EXPECT_EQ(attach(file, grown)->insert(key(1), TestValue(key(1), 0, 5000 - 92)), 0);
    EXPECT_EQ(file.size(), grown);
}

/// A change, whether a reader holds the snapshot, and the allocations that are expected to grow the file.
struct GrowthCase {
    const char* name;
    bool held;
    std::function<int(TestCache&, const TestSource&)> change;
    bool growsForSnapshot;
    bool growsForRecord;
    unsigned keyWritten;
    std::vector<unsigned> keysAfter;
};

void PrintTo(const GrowthCase& growth, std::ostream* out) {
    *out << growth.name;
}

class QelCacheGrowthTest : public testing::TestWithParam<GrowthCase> {};

TEST_P(QelCacheGrowthTest, RebasesEveryAddressWhereverTheFileGrows) {
    const GrowthCase& growth = GetParam();
    bool grewForSnapshot = false;
    bool grewForRecord = false;
    // Vary the size of key 2, so that each allocation in turn is the first one that does not fit into the first page.
    for (unsigned filler = 3000; filler < 3960; filler += 8) {
        const TempFile file;
        const TestCachePtr cache = attach(file);
        ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
        ASSERT_EQ(cache->insert(key(2), TestValue(key(2), 0, filler - 92)), 0);
        const std::uint64_t before = file.size();
        if (before != 4096)
            break;
        TestListPtr list = growth.held ? cache->getList() : nullptr;
        std::uint64_t between = 0;
        const TestValue value(key(9), 1, 100);
        const TestSource source{[&](const void** buffer, unsigned& length, const void* old) {
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

const auto insertThird = [](TestCache& cache, const TestSource& source) { return cache.insert(key(3), source); };
const auto updateFirst = [](TestCache& cache, const TestSource& source) { return cache.update(key(1), source); };
const auto removeFirst = [](TestCache& cache, const TestSource&) { return cache.remove(key(1)); };

INSTANTIATE_TEST_SUITE_P(Changes, QelCacheGrowthTest,
                         testing::Values(GrowthCase{"insert", false, insertThird, true, true, 3, {1, 2, 3}},
                                         GrowthCase{
                                             "insert with a reader", true, insertThird, true, true, 3, {1, 2, 3}},
                                         GrowthCase{"update", false, updateFirst, false, true, 1, {1, 2}},
                                         GrowthCase{"update with a reader", true, updateFirst, true, true, 1, {1, 2}},
                                         GrowthCase{"remove", false, removeFirst, false, false, 0, {2}},
                                         GrowthCase{"remove with a reader", true, removeFirst, true, false, 0, {2}}));

TEST_F(QelCacheLogicGrowthTest, ListsInOldMappingsStayReadableWhileTheFileGrows) {
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

// ---- two caches, as in two processes

TEST_F(QelCacheLogicGrowthTest, LaterAttachMapsTheWholeGrownFile) {
    const TestCachePtr cache = attach(file);
    for (unsigned i = 0; i < 300; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), i, 100)), 0);
    const TestCachePtr late = attach(file);
    const TestListPtr list = late->getList();
    ASSERT_EQ(list->size(), 300U);
    for (unsigned i = 0; i < 300; ++i)
        ASSERT_TRUE(TestValue(key(i), i, 100).equals(list->get(key(i))));
}

TEST_F(QelCacheLogicGrowthTest, OtherCacheRemapsOnNextLockAndItsListsStayReadable) {
    const TestCachePtr grower = attach(file);
    const TestCachePtr other = attach(file);
    ASSERT_EQ(grower->insert(key(1), TestValue(key(1))), 0);
    TestListPtr list = other->getList();
    ASSERT_EQ(grower->insert(key(2), TestValue(key(2), 0, 20000)), 0);
    ASSERT_EQ(grower->update(key(1), TestValue(key(1), 1)), 0);
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1))));
    EXPECT_TRUE(TestValue(key(2), 0, 20000).equals(other->getCopy(key(2))));
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1)))) << "still valid in the old mapping";
    EXPECT_EQ(list->size(), 1U);
    list.reset();
    EXPECT_EQ(other->insert(key(3), TestValue(key(3))), 0);
    EXPECT_TRUE(TestValue(key(3)).equals(grower->getCopy(key(3))));
    expectClean();
}

TEST_F(QelCacheLogicGrowthTest, ThreadsShareOneCacheWhileItGrows) {
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

TEST_F(QelCacheLogicGrowthTest, RandomChangesAgreeWithModel) {
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
