#include <algorithm>
#include <csignal>
#include <map>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

using testing::IsEmpty;

using QelCacheLogicProcessTest = CacheFileTest;

/// A value whose serialisation signals that the lock is held and then blocks forever.
struct StuckSource {
    const Signal& holding;
    const Signal& never;
    int getBuffer(const void**, unsigned&, const void*) const {
        holding.notify();
        never.wait();
        return -1;
    }
};

// ---- fork

TEST_F(QelCacheLogicProcessTest, ForkedChildIsDetachedAndReleasesNothing) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    TestListPtr list = cache->getList();
    const std::uint32_t references = file.word(20 + file.word(20));
    EXPECT_EQ(references, 2U);
    EXPECT_EQ(inChild([&] {
                  if (cache->isAccessible() || list->isAccessible())
                      return 1;
                  if (list->begin() || list->size() || list->get(key(1)) || cache->getCopy(key(1)) || cache->getList())
                      return 2;
                  if (cache->insert(key(2), TestValue(key(2))) != cacheNotAttached)
                      return 3;
                  list.reset();
                  return file.word(20 + file.word(20)) == references ? 0 : 4;
              }),
              0);
    EXPECT_TRUE(TestValue(key(1)).equals(list->get(key(1)))) << "the parent is not affected";
    ASSERT_EQ(cache->insert(key(2), TestValue(key(2))), 0);
    list.reset();
    expectClean();
}

TEST_F(QelCacheLogicProcessTest, ForkedChildReattachesAndWorksConcurrentlyWithItsParent) {
    const TestCachePtr cache = attach(file);
    const TestListPtr list = cache->getList();
    const Signal parentDone;
    const Signal childDone;
    ChildProcess child([&] {
        const TestCachePtr own = attach(file);
        for (unsigned i = 0; i < 200; ++i)
            if (own->insert(key(2 * i), TestValue(key(2 * i), i, 100)))
                return 1;
        childDone.notify();
        parentDone.wait();
        for (unsigned i = 0; i < 400; ++i)
            if (!own->getCopy(key(i)))
                return 2;
        return 0;
    });
    for (unsigned i = 0; i < 200; ++i)
        ASSERT_EQ(cache->insert(key(2 * i + 1), TestValue(key(2 * i + 1), i, 100)), 0);
    parentDone.notify();
    childDone.wait();
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(list->size(), 0U);
    EXPECT_EQ(cache->getList()->size(), 400U);
}

TEST_F(QelCacheLogicProcessTest, ForkWithListsInSeveralMappingsLeavesCountsUnchanged) {
    const TestCachePtr cache = attach(file);
    std::vector<TestListPtr> lists;
    for (unsigned i = 0; i < 100; ++i) {
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i), 0, 300)), 0);
        if (i % 10 == 0)
            lists.push_back(cache->getList());
    }
    const std::string before = file.read();
    EXPECT_EQ(inChild([&] {
                  lists.clear();
                  return 0;
              }),
              0);
    EXPECT_EQ(file.read(), before);
    lists.clear();
    expectClean();
}

// ---- death

TEST_F(QelCacheLogicProcessTest, SnapshotOfKilledReaderStaysAllocatedAndTheCacheStillWorks) {
    const TestCachePtr cache = attach(file);
    for (unsigned i = 0; i < 10; ++i)
        ASSERT_EQ(cache->insert(key(i), TestValue(key(i))), 0);
    {
        const Signal holding;
        const Signal never;
        ChildProcess reader([&] {
            const TestCachePtr own = attach(file);
            const TestListPtr list = own->getList();
            holding.notify();
            never.wait();
            return list ? 0 : 1;
        });
        holding.wait();
        reader.kill();
        EXPECT_EQ(reader.wait(), -1);
    }
    EXPECT_EQ(file.word(20 + file.word(20)), 2U) << "the reference is never released";
    for (unsigned i = 0; i < 10; ++i)
        ASSERT_EQ(cache->update(key(i), TestValue(key(i), 1)), 0);
    EXPECT_THAT(findingsIn(file, false), IsEmpty());
    EXPECT_GT(cache->getTotalAllocatedSize(), cache->getAchiveableSize()) << "the old blocks stay allocated";
    for (unsigned i = 0; i < 10; ++i)
        EXPECT_TRUE(TestValue(key(i), 1).equals(cache->getCopy(key(i))));
}

TEST_F(QelCacheLogicProcessTest, LockOfKilledWriterIsReleased) {
    const TestCachePtr cache = attach(file);
    ASSERT_EQ(cache->insert(key(1), TestValue(key(1))), 0);
    const Signal holding;
    const Signal never;
    ChildProcess writer([&] { return attach(file)->update(key(1), StuckSource{holding, never}); });
    holding.wait();
    QelMappedMemoryManager::Storage storage(file.path());
    ASSERT_NE(storage.getStorage(4096, nullptr), nullptr);
    EXPECT_NE(storage.QelMemoryMappedFile::lock(true), 0) << "the lock is held";
    writer.kill();
    EXPECT_EQ(writer.wait(), -1);
    EXPECT_EQ(cache->update(key(1), TestValue(key(1), 2)), 0);
    expectClean();
}

TEST_F(QelCacheLogicProcessTest, FileIsReadableAfterWriterIsKilledAnywhere) {
    // Kill at random moments.  Afterwards the lock is free and every listed record is one that was written.
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        const TempFile own;
        const Signal begun;
        ChildProcess writer([&] {
            const TestCachePtr cache = attach(own);
            begun.notify();
            for (unsigned i = 0;; ++i) {
                const QelGUIDBase id = key(i % 50);
                const TestValue value(id, i, i % 300);
                if (cache->update(id, value) == cacheKeyMissing && cache->insert(id, value))
                    return 1;
            }
        });
        begun.wait();
        const TestCachePtr cache = attach(own);
        for (auto work = below(random, 2000); work > 0; --work)
            static_cast<void>(cache->getTotalAllocatedSize());
        writer.kill();
        EXPECT_EQ(writer.wait(), -1);
        const TestListPtr list = cache->getList();
        ASSERT_NE(list, nullptr);
        for (const auto& record : *list) {
            const TestRecord& item = *record.data;
            EXPECT_TRUE(TestValue(item.eid, item.version, item.extra).equals(&item));
        }
    }
}

// ---- several processes at once

TEST_F(QelCacheLogicProcessTest, AlternatingProcessesSeeEachOthersChanges) {
    constexpr unsigned turns = 3000;
    const Signal toChild;
    const Signal toParent;
    // Both processes replay the same random changes.  The one whose turn it is makes the change, the other one checks
    // its effect.
    const auto game = [&](bool parent) {
        const TestCachePtr cache = attach(file);
        std::mt19937 random(5);
        std::map<QelGUIDBase, TestValue> model;
        TestListPtr held;
        std::map<QelGUIDBase, TestValue> heldModel;
        for (unsigned turn = 0; turn < turns; ++turn) {
            const QelGUIDBase id = key(below(random, 60));
            const TestValue value(id, turn, below(random, 1000));
            const bool remove = below(random, 3) == 0;
            const bool mine = (turn % 2 == 0) == parent;
            if (mine) {
                const int result = model.contains(id) ? remove ? cache->remove(id) : cache->update(id, value)
                                                      : cache->insert(id, value);
                if (result)
                    return 1;
                (parent ? toChild : toParent).notify();
            } else {
                (parent ? toParent : toChild).wait();
            }
            if (model.contains(id) && remove)
                model.erase(id);
            else
                model.insert_or_assign(id, value);
            // The next turn is our own, so nothing changes during the check.
            if (!mine) {
                const auto copy = cache->getCopy(id);
                const auto expected = model.find(id);
                if (expected == model.end() ? copy != nullptr : !expected->second.equals(copy))
                    return 2;
                if (turn % 10 < 2) {
                    held = cache->getList();
                    heldModel = model;
                }
            }
            if (held) {
                if (held->size() != heldModel.size())
                    return 3;
                for (const auto& [known, record] : heldModel)
                    if (!record.equals(held->get(known)))
                        return 4;
            }
        }
        return 0;
    };
    const auto play = [&](bool parent) {
        const int result = game(parent);
        for (unsigned turn = 0; turn < turns; ++turn) // unblock the other process after a failure
            (parent ? toChild : toParent).notify();
        return result;
    };
    ChildProcess child([&] { return play(false); });
    EXPECT_EQ(play(true), 0);
    EXPECT_EQ(child.wait(), 0);
    expectClean();
}

/// A reproducible sequence of changes to the keys of one writer.
class Script {
public:
    explicit Script(unsigned seed) : m_base(seed * 1000), m_random(seed) {}

    /// Applies the next change to the cache, if not null, and to the model.  Returns false if the cache returned a
    /// wrong result.
    bool step(TestCache* cache) {
        const QelGUIDBase id = key(m_base + below(m_random, 40));
        const TestValue value(id, ++m_version, below(m_random, 600));
        const bool remove = below(m_random, 4) == 0;
        const bool present = model.contains(id);
        int result = 0;
        if (cache)
            result = !present ? cache->insert(id, value) : remove ? cache->remove(id) : cache->update(id, value);
        if (present && remove)
            model.erase(id);
        else
            model.insert_or_assign(id, value);
        return result == 0;
    }

    /// Whether the keys of this writer in `list` equal the model.
    [[nodiscard]] bool agreesWith(const TestList& list) const {
        std::size_t own = 0;
        for (const auto& record : list)
            own += key(m_base) <= record.key && record.key < key(m_base + 1000);
        return own == model.size() && std::all_of(model.begin(), model.end(), [&](const auto& entry) {
                   const TestRecord* record = list.get(entry.first);
                   return entry.second.equals(record);
               });
    }

    std::map<QelGUIDBase, TestValue> model;

private:
    unsigned m_base;
    std::mt19937 m_random;
    std::uint32_t m_version = 0;
};

TEST_F(QelCacheLogicProcessTest, ConcurrentWritersAndReadersAgreeOverThousandsOfOperations) {
    constexpr unsigned steps = 3000;
    const Signal start;
    const auto writer = [&](unsigned seed) {
        return [&, seed] {
            const TestCachePtr cache = attach(file);
            start.wait();
            Script script(seed);
            for (unsigned step = 0; step < steps; ++step) {
                if (!script.step(cache.get()))
                    return 1;
                if (step % 50 == 0) {
                    const TestListPtr list = cache->getList();
                    if (!list || !script.agreesWith(*list))
                        return 2;
                }
            }
            return 0;
        };
    };
    const auto reader = [&] {
        const TestCachePtr cache = attach(file);
        start.wait();
        std::map<QelGUIDBase, std::uint32_t> versions;
        for (unsigned round = 0; round < steps / 3; ++round) {
            const TestListPtr list = cache->getList();
            if (!list)
                return 1;
            for (int pass = 0; pass < 2; ++pass) {
                const QelGUIDBase* last = nullptr;
                for (const auto& record : *list) {
                    const TestRecord& item = *record.data;
                    if (last && !(*last < record.key))
                        return 2;
                    last = &record.key;
                    if (!TestValue(record.key, item.version, item.extra).equals(&item))
                        return 3;
                    std::uint32_t& seen = versions[record.key];
                    if (item.version < seen)
                        return 4; // an older state after a newer one
                    seen = item.version;
                }
            }
        }
        return 0;
    };
    attach(file);
    ChildProcess children[] = {ChildProcess(writer(1)), ChildProcess(writer(2)), ChildProcess(reader),
                               ChildProcess(reader)};
    for (std::size_t i = 0; i < std::size(children); ++i)
        start.notify();
    for (ChildProcess& child : children)
        EXPECT_EQ(child.wait(), 0);

    const TestCachePtr cache = attach(file);
    const TestListPtr list = cache->getList();
    std::size_t total = 0;
    for (const unsigned seed : {1U, 2U}) {
        Script script(seed);
        for (unsigned step = 0; step < steps; ++step)
            script.step(nullptr);
        EXPECT_TRUE(script.agreesWith(*list)) << "writer " << seed;
        total += script.model.size();
    }
    EXPECT_EQ(list->size(), total);
    EXPECT_THAT(findingsIn(file, false), IsEmpty());
}

} // namespace
} // namespace Qel
