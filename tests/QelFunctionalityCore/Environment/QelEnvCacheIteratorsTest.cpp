#include "QelFunctionalityCore/Environment/QelEnvCacheIterators.h"

#include <iterator>
#include <type_traits>

#include "EnvCacheTestSupport.h"

namespace Qel {
namespace {

using Cache::Iterator::Flat;
using Cache::Iterator::Children::Data;
using Cache::Iterator::Children::Keys;
using testing::ElementsAre;
using testing::IsEmpty;

class QelEnvCacheIteratorsTest : public EnvCacheTest {
protected:
    /// Environments 1 to 6: the odd ones are children of 100, the even ones of 200.
    static void insertTwoFamilies() {
        for (const int number : {6, 2, 5, 1, 3, 4})
            insert(makeEnv(eidOf(number), std::to_string(number), "plain", eidOf(number % 2 ? 100 : 200)));
    }

    static std::vector<QelEID> keysOf(const Keys& keys) { return {keys.begin(), keys.end()}; }
    static std::vector<std::string> namesOf(const Data& data) {
        std::vector<std::string> names;
        for (const QelEnv* env : data) {
            QelStringOptionalProperty name;
            EXPECT_EQ(env->getConfig()->getName(name), 0);
            names.push_back(name.get());
        }
        return names;
    }
};

TEST_F(QelEnvCacheIteratorsTest, ListIteratorFollowsEidOrder) {
    insertTwoFamilies();
    const auto list = envCache()->getEnvList();
    std::vector<std::string> names;
    for (auto at = list->begin(); !(at == list->end()); ++at)
        names.push_back(nameOf(at.operator->()));
    EXPECT_THAT(names, ElementsAre("1", "2", "3", "4", "5", "6"));
}

TEST_F(QelEnvCacheIteratorsTest, ListIteratorComparesPositions) {
    insertTwoFamilies();
    const auto list = envCache()->getEnvList();
    auto a = list->begin();
    const auto b = list->begin();
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(++a == b);
    EXPECT_TRUE(QelEnvCache::EnvValuesList::const_iterator() == QelEnvCache::EnvValuesList::const_iterator());
}

TEST_F(QelEnvCacheIteratorsTest, CreatesOneObjectPerDereferencedPosition) {
    const KeyedEnvFactory keyed;
    for (const int number : {1, 2, 3})
        insert(makeEnv(eidOf(number), "env", KeyedEnvFactory::type));
    const auto list = envCache()->getEnvList();
    const int before = keyed.made();
    auto at = list->begin();
    EXPECT_EQ(keyed.made(), before) << "not created before it is dereferenced";
    const QelEnvCSP first = at.operator->();
    EXPECT_EQ(at.operator->(), first);
    EXPECT_EQ(keyed.made(), before + 1);
    ++at;
    ++at;
    EXPECT_EQ(at->getEID(), eidOf(3));
    EXPECT_EQ(keyed.made(), before + 2) << "none for the position skipped";
    EXPECT_EQ(first->getEID(), eidOf(1)) << "an environment returned earlier stays valid";
}

TEST_F(QelEnvCacheIteratorsTest, EnvironmentOfIteratorReadsFromFile) {
    insert(makeEnv(eidOf(1)));
    const auto list = envCache()->getEnvList();
    EXPECT_EQ(list->begin()->getCoreBasic().get(), list->get(eidOf(1)));
}

TEST_F(QelEnvCacheIteratorsTest, EntryWithoutRecordIsNullAndHasNoParent) {
    insertTwoFamilies();
    const auto list = envCache()->getEnvList();
    const std::uint32_t snapshot = 20 + file.word(20);
    file.setWord(snapshot + 12 + 16, 1); // the null distance, in the first entry
    EXPECT_FALSE(list->begin().operator->());
    EXPECT_EQ(*Flat(list->begin()), nullptr);
    EXPECT_FALSE(list->getEnv(eidOf(1)));
    EXPECT_THAT(keysOf(Keys(eidOf(100), list)), ElementsAre(eidOf(3), eidOf(5)));
}

TEST_F(QelEnvCacheIteratorsTest, FlatIsForwardIteratorOverAllEnvironments) {
    static_assert(std::is_same_v<std::iterator_traits<Flat>::reference, const QelEnv*>);
    insertTwoFamilies();
    const auto list = envCache()->getEnvList();
    int number = 0;
    Flat at(list->begin());
    const Flat start = at;
    for (; at != Flat(list->end()); at++)
        EXPECT_EQ((*at)->getEID(), eidOf(++number));
    EXPECT_EQ(number, 6);
    EXPECT_EQ((*start)->getEID(), eidOf(1)) << "a copy keeps its position";
}

TEST_F(QelEnvCacheIteratorsTest, ChildHasEidOfParent) {
    const QelEnv env = makeEnv(eidOf(1), "env", "plain", eidOf(100));
    EXPECT_TRUE(Data::isChild(eidOf(100))(&env));
    EXPECT_FALSE(Data::isChild(eidOf(1))(&env));
    EXPECT_FALSE(Data::isChild(QelEID())(&env));
    EXPECT_FALSE(Data::isChild(eidOf(100))(nullptr));
}

TEST_F(QelEnvCacheIteratorsTest, ChildrenAreFilteredFromGivenList) {
    insertTwoFamilies();
    const auto list = envCache()->getEnvList();
    insert(makeEnv(eidOf(7), "7", "plain", eidOf(100)));
    EXPECT_THAT(namesOf(Data(eidOf(100), list)), ElementsAre("1", "3", "5"));
    EXPECT_THAT(namesOf(Data(eidOf(200), list)), ElementsAre("2", "4", "6"));
    EXPECT_THAT(namesOf(Data(eidOf(300), list)), IsEmpty());
    EXPECT_THAT(keysOf(Keys(eidOf(200), list)), ElementsAre(eidOf(2), eidOf(4), eidOf(6)));
}

TEST_F(QelEnvCacheIteratorsTest, RangeKeepsItsListAlive) {
    insertTwoFamilies();
    Keys keys(eidOf(100), envCache()->getEnvList());
    for (const int number : {1, 2, 3, 4, 5, 6})
        ASSERT_EQ(envCache()->remove(eidOf(number)), 0);
    EXPECT_THAT(keysOf(keys), ElementsAre(eidOf(1), eidOf(3), eidOf(5)));
}

TEST_F(QelEnvCacheIteratorsTest, ChildrenDefaultToCacheOfProcess) {
    insertTwoFamilies();
    EXPECT_THAT(namesOf(Data(eidOf(100))), ElementsAre("1", "3", "5"));
    EXPECT_THAT(keysOf(Keys(eidOf(200))), ElementsAre(eidOf(2), eidOf(4), eidOf(6)));
    EXPECT_EQ(snapshotReferences(), 1U) << "the ranges have released their lists";
}

TEST_F(QelEnvCacheIteratorsTest, WithoutCacheThereAreNoChildren) {
    initEnvCache(file.path() + "/below", false);
    const LogCapture log;
    EXPECT_THAT(namesOf(Data(eidOf(100))), IsEmpty());
    EXPECT_THAT(keysOf(Keys(eidOf(100))), IsEmpty());
}

TEST_F(QelEnvCacheIteratorsTest, NullListIsEmptyRange) {
    const QelEnvCache::EnvValuesListPtr none;
    const Keys keys(eidOf(100), none);
    EXPECT_EQ(keys.begin(), keys.end());
    const Data data(eidOf(100), none);
    EXPECT_EQ(data.begin(), data.end());
}

// ---- the order of sets of EIDs

class EnvIDOrderTest : public EnvCacheTest {
protected:
    EnvIDOrderTest() {
        sort_order_by_veid = 1;
        for (const auto& [number, sortKey] : {std::pair(1, 30), {2, 20}, {3, 20}, {4, -1}}) {
            QelEnv env = makeEnv(eidOf(number), "env", KeyedEnvFactory::type);
            env.setStatus({sortKey, 0});
            insert(env);
        }
    }
    ~EnvIDOrderTest() override { sort_order_by_veid = 0; }

    const KeyedEnvFactory keyed;
    const QelEnvIDComparator less{};
};

TEST_F(EnvIDOrderTest, SetsAreOrderedBySortKeysFromCache) {
    const QelEnvIDList byKey{eidOf(1), eidOf(2), eidOf(3), eidOf(4)};
    EXPECT_THAT(byKey, ElementsAre(eidOf(2), eidOf(3), eidOf(1), eidOf(4)));
    sort_order_by_veid = 0;
    const QelEnvIDList byIdentifier{eidOf(4), eidOf(3), eidOf(2), eidOf(1)};
    EXPECT_THAT(byIdentifier, ElementsAre(eidOf(1), eidOf(2), eidOf(3), eidOf(4)));
}

TEST_F(EnvIDOrderTest, UnknownEnvironmentIsOrderedByEid) {
    EXPECT_TRUE(less(eidOf(1), eidOf(5)));
    EXPECT_FALSE(less(eidOf(5), eidOf(1)));
    EXPECT_TRUE(less(eidOf(0), eidOf(2)));
    EXPECT_TRUE(less(eidOf(5), eidOf(6)));
}

TEST_F(EnvIDOrderTest, WithoutCacheSetsAreOrderedByEid) {
    finiEnvCache();
    initEnvCache(file.path() + "/below", false);
    const LogCapture log;
    EXPECT_TRUE(less(eidOf(1), eidOf(2)));
    EXPECT_FALSE(less(eidOf(2), eidOf(1)));
    EXPECT_EQ(log.messages().size(), 2U) << "each comparison calls envCache() once";
}

TEST_F(EnvIDOrderTest, ChildrenAreSyncedInSortKeyOrder) {
    const RegisteredUpdater updater(QelEnv::type);
    EXPECT_CALL(*updater, syncEnvList(QelEID(), ElementsAre(eidOf(2), eidOf(3), eidOf(1), eidOf(4))));
    envCache()->syncEnvListOf(QelEID());
}

} // namespace
} // namespace Qel
