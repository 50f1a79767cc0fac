#include "QelFunctionalityCore/Environment/QelEnvCache.h"

#include <thread>
#include <type_traits>

#include <boost/pointer_cast.hpp>

#include "EnvCacheTestSupport.h"
#include "QelCore/QelProcess.h"
#include "QelFunctionalityCore/Environment/QelEnvCacheIterators.h"
#include "support/ChildProcess.h"

namespace Qel {
namespace {

using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::Property;
using testing::Return;
using TestSupport::inChild;

const char* const type = "mock";

auto isEnv(const QelEID& eid) {
    return Property(&QelEnv::getEID, eid);
}

std::string noUpdater(const std::string& wanted) {
    return "4 EnvUpdater is not found for '" + wanted + "'.";
}

std::string called(const std::string& operation, const QelEID& eid, int result) {
    return std::string(result == 0 ? "4" : "2") + " EnvCache::" + operation + " called for " + eid.toString() +
           ", returning " + std::to_string(result) + ".";
}

std::string unavailable(int code) {
    return "1 Environment cache unavailable for process " + getproctitle() + ", code is " + std::to_string(code) + ".";
}

class QelEnvCacheTest : public EnvCacheTest {};

// ---- the cache of the process

TEST_F(QelEnvCacheTest, FirstCallAttachesAndLaterCallsReturnSameObject) {
    EXPECT_FALSE(file.exists());
    const QelEnvCacheSP cache = envCache();
    ASSERT_TRUE(cache);
    EXPECT_TRUE(cache->isAccessible());
    EXPECT_EQ(cache->getID(), file.path());
    EXPECT_EQ(envCache(), cache);
}

TEST_F(QelEnvCacheTest, NewFileHasDocumentedLayout) {
    if (QelMemoryMappedFile::getMemoryPageSize() != 4096)
        GTEST_SKIP() << "pages of another size";
    ASSERT_TRUE(envCache());
    ASSERT_EQ(file.size(), 4096U);
    std::vector<std::uint32_t> expected(1024, 0);
    expected[0] = 56;                                       // distance to the first free block
    expected[4 / 4] = 1;                                    // units of the sentinel
    expected[8 / 4] = 96;                                   // bytes in use
    expected[12 / 4] = 4096;                                // bytes managed
    expected[16 / 4] = 56;                                  // bytes of the heap's header
    expected[20 / 4] = 4064 - 20;                           // distance to the snapshot
    expected[28 / 4] = 0xCACEFE03;                          // magic
    expected[32 / 4] = 56;                                  // bytes of the header
    expected[36 / 4] = 16;                                  // bytes of a key
    expected[40 / 4] = 225;                                 // revision
    expected[44 / 4] = 92;                                  // declared bytes of a record
    expected[48 / 4] = 1;                                   // generation
    expected[52 / 4] = 1;                                   // valid
    expected[56 / 4] = static_cast<std::uint32_t>(-56);     // the free block is the last of the list
    expected[60 / 4] = 500;                                 // units of the free block
    expected[4060 / 4] = 5;                                 // units of the snapshot's block
    expected[4064 / 4] = 1;                                 // references of the snapshot
    expected[4068 / 4] = 0;                                 // records
    expected[4072 / 4] = 1;                                 // reserved slots
    for (unsigned offset = 0; offset < 4096; offset += 4) { // all other words are zero
        if (offset == 4056)                                 // the link of an allocated block is undefined
            continue;
        EXPECT_EQ(file.word(offset), expected[offset / 4]) << "offset " << offset;
    }
}

TEST_F(QelEnvCacheTest, ConstructorOpensNothing) {
    const QelEnvCacheSP cache(new QelEnvCache(file.path()));
    EXPECT_FALSE(file.exists());
    EXPECT_FALSE(cache->isAccessible());
    EXPECT_EQ(cache->insert(makeEnv(eidOf(1))), cacheNotAttached);
    EXPECT_FALSE(cache->getEnvList());
    EXPECT_FALSE(cache->getEnvCopy(eidOf(1)));
}

TEST_F(QelEnvCacheTest, LimitsAreEqualInAllProcesses) {
    EXPECT_EQ(QelEnvCache::maxRecordSize, 0x1000000U);
    EXPECT_EQ(QelEnvCache::maxLiveLists, 16U);
    EXPECT_EQ(QelEnvCache::maxFileSize, 0x40000000U);
}

TEST_F(QelEnvCacheTest, FileKeepsItsEnvironmentsUnlessInitRemovesIt) {
    insert(makeEnv(eidOf(1)));
    finiEnvCache();
    EXPECT_EQ(initEnvCache(file.path(), false), 0);
    EXPECT_TRUE(envCache()->getEnvCopy(eidOf(1)));
    finiEnvCache();
    EXPECT_EQ(initEnvCache(file.path(), true), 0);
    EXPECT_FALSE(file.exists());
    EXPECT_FALSE(envCache()->getEnvCopy(eidOf(1)));
    EXPECT_EQ(initEnvCache(file.path() + ".missing", true), 0) << "nothing to remove";
}

TEST_F(QelEnvCacheTest, FiniReleasesObjectAndNextCallAttachesAgain) {
    const QelEnvCacheSP first = envCache();
    finiEnvCache();
    EXPECT_TRUE(first->isAccessible()) << "an owner can continue to use it";
    const QelEnvCacheSP second = envCache();
    EXPECT_TRUE(second);
    EXPECT_NE(first, second);
}

TEST_F(QelEnvCacheTest, UnusableFileIsMarkedAndLoggedAtEachCall) {
    ASSERT_TRUE(envCache());
    finiEnvCache();
    file.setWord(28, 1);
    const LogCapture log;
    EXPECT_FALSE(envCache());
    EXPECT_EQ(file.word(52), 0U);
    EXPECT_FALSE(envCache());
    EXPECT_THAT(log.messages(), ElementsAre(unavailable(-12), unavailable(-14)));
    EXPECT_THAT(log.sources(), ElementsAre("QelFunctionalityCore core/src/QelFunctionalityCore/QelEnvCache",
                                           "QelFunctionalityCore core/src/QelFunctionalityCore/QelEnvCache"));
    EXPECT_TRUE(file.exists()) << "kept for an administrator to examine";
}

TEST_F(QelEnvCacheTest, FileThatBecomesUsableIsAttachedAtNextCall) {
    ASSERT_TRUE(envCache());
    finiEnvCache();
    file.setWord(52, 0);
    const LogCapture log;
    EXPECT_FALSE(envCache());
    initEnvCache(file.path(), true);
    EXPECT_TRUE(envCache());
    EXPECT_THAT(log.messages(), ElementsAre(unavailable(-14)));
}

TEST_F(QelEnvCacheTest, EmptyPathIsTriedAndLoggedAtEachCall) {
    initEnvCache({}, false);
    const LogCapture log;
    EXPECT_FALSE(envCache());
    EXPECT_FALSE(envCache());
    EXPECT_THAT(log.messages(), ElementsAre(unavailable(-2), unavailable(-2)));
}

TEST_F(QelEnvCacheTest, SecondAttemptAttachesIfCauseHasPassed) {
    const std::string folder = file.path();
    const LogSink oldSink = setLogSink([&](const LogRecord&) { std::filesystem::create_directory(folder); });
    const QelEnvCacheSP cache = QelEnvCache::createInstance(folder + "/below", nullptr);
    setLogSink(oldSink);
    ASSERT_TRUE(cache);
    EXPECT_TRUE(cache->isAccessible());
}

TEST_F(QelEnvCacheTest, UnmappableFileIsNotACache) {
    initEnvCache(file.path() + "/below", false);
    const LogCapture log;
    EXPECT_FALSE(envCache());
    EXPECT_THAT(log.messages(), ElementsAre(unavailable(-2)));
    std::filesystem::create_directory(file.path());
    EXPECT_TRUE(envCache());
}

TEST_F(QelEnvCacheTest, InstanceCallsGivenPreProcess) {
    struct Stage : QelEnvCache::PreProcess {
        int insert(const QelEnv& env) override { return env.getParentEID().isValid() ? 41 : 0; }
        int update(const QelEnv&) override { return 42; }
        int remove(const QelEnv&) override { return 43; }
    };
    const QelEnvCacheSP cache =
        QelEnvCache::createInstance(file.path(), boost::shared_ptr<QelEnvCache::PreProcess>(new Stage));
    ASSERT_TRUE(cache);
    EXPECT_EQ(cache->insert(makeEnv(eidOf(1), "env", type, eidOf(2))), 41);
    EXPECT_EQ(cache->insert(makeEnv(eidOf(1))), 0);
    EXPECT_EQ(cache->update(makeEnv(eidOf(1))), 42);
    EXPECT_EQ(cache->remove(eidOf(1)), 43);
    EXPECT_TRUE(cache->getEnvCopy(eidOf(1)));
}

// ---- insert

TEST_F(QelEnvCacheTest, TypeWithoutUpdaterIsInserted) {
    ASSERT_TRUE(envCache());
    const LogCapture log;
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), "one", type)), 0);
    EXPECT_THAT(log.messages(), ElementsAre(noUpdater("mock"), called("insert", eidOf(1), 0)));
    EXPECT_THAT(log.sources(), testing::Each("QelFunctionalityCore core/src/QelFunctionalityCore/QelEnvCache"));
    EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(1))), "one");
}

TEST_F(QelEnvCacheTest, UpdaterIsCalledBeforeInsertReachesFile) {
    const RegisteredUpdater updater(type);
    {
        const InSequence order;
        EXPECT_CALL(*updater, checkEnv(isEnv(eidOf(1)))).WillOnce(Return(0));
        EXPECT_CALL(*updater, insertEnv(isEnv(eidOf(1)))).WillOnce([](const QelEnv& env) {
            EXPECT_FALSE(envCache()->getEnvCopy(env.getEID()));
            return 0;
        });
    }
    const LogCapture log;
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), "one", type)), 0);
    EXPECT_THAT(log.messages(), ElementsAre(called("insert", eidOf(1), 0)));
    EXPECT_TRUE(envCache()->getEnvCopy(eidOf(1)));
}

TEST_F(QelEnvCacheTest, UpdaterCanRejectInsert) {
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, checkEnv).WillOnce(Return(0));
    EXPECT_CALL(*updater, insertEnv).WillOnce(Return(77));
    const LogCapture log;
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), "one", type)), 77);
    EXPECT_THAT(log.messages(), ElementsAre(called("insert", eidOf(1), 77)));
    EXPECT_FALSE(envCache()->getEnvCopy(eidOf(1)));
}

TEST_F(QelEnvCacheTest, UninterestedUpdaterIsNotCalledForInsert) {
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, checkEnv).WillOnce(Return(1));
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), "one", type)), 0);
    EXPECT_TRUE(envCache()->getEnvCopy(eidOf(1)));
}

TEST_F(QelEnvCacheTest, InsertOfExistingEnvironmentCallsRemoveOfUpdater) {
    insert(makeEnv(eidOf(1), "first", type));
    const RegisteredUpdater updater(type);
    {
        const InSequence order;
        EXPECT_CALL(*updater, checkEnv).WillOnce(Return(0));
        EXPECT_CALL(*updater, insertEnv).WillOnce(Return(0));
        EXPECT_CALL(*updater, removeEnv(eidOf(1))).WillOnce(Return(99));
    }
    const LogCapture log;
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), "second", type)), -5);
    EXPECT_THAT(log.messages(), ElementsAre(called("insert", eidOf(1), -5)));
    EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(1))), "first");
}

TEST_F(QelEnvCacheTest, FailedInsertCallsRemoveOfUninterestedUpdaterToo) {
    insert(makeEnv(eidOf(1), "first", type));
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, checkEnv).WillOnce(Return(1));
    EXPECT_CALL(*updater, removeEnv(eidOf(1))).WillOnce(Return(0));
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), "second", type)), -5);
}

TEST_F(QelEnvCacheTest, EnvironmentWithoutEidIsRejectedWithoutCallingUpdater) {
    const RegisteredUpdater updater(type);
    ASSERT_TRUE(envCache());
    const LogCapture log;
    EXPECT_EQ(envCache()->insert(makeEnv(QelEID(), "none", type)), -1);
    EXPECT_EQ(envCache()->update(makeEnv(QelEID(), "none", type)), -1);
    EXPECT_THAT(log.messages(), IsEmpty());
    EXPECT_EQ(envCache()->getEnvList()->size(), 0U);
}

TEST_F(QelEnvCacheTest, RecordAbove16MiBIsRejectedAndRemovedFromUpdater) {
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, checkEnv).WillOnce(Return(0));
    EXPECT_CALL(*updater, insertEnv).WillOnce(Return(0));
    EXPECT_CALL(*updater, removeEnv(eidOf(1))).WillOnce(Return(0));
    EXPECT_EQ(envCache()->insert(makeEnv(eidOf(1), std::string(0x1000000, 'x'), type)), -3);
    EXPECT_FALSE(envCache()->getEnvCopy(eidOf(1)));
    insert(makeEnv(eidOf(2)));
    EXPECT_THAT(findings(), IsEmpty());
}

// ---- update

TEST_F(QelEnvCacheTest, UpdaterIsCalledBeforeUpdateReachesFile) {
    insert(makeEnv(eidOf(1), "old", type));
    const RegisteredUpdater updater(type);
    {
        const InSequence order;
        EXPECT_CALL(*updater, checkEnv(isEnv(eidOf(1)))).WillOnce(Return(0));
        EXPECT_CALL(*updater, updateEnv(isEnv(eidOf(1)))).WillOnce([](const QelEnv& env) {
            EXPECT_EQ(nameOf(envCache()->getEnvCopy(env.getEID())), "old");
            return 0;
        });
    }
    const LogCapture log;
    EXPECT_EQ(envCache()->update(makeEnv(eidOf(1), "new", type)), 0);
    EXPECT_THAT(log.messages(), ElementsAre(called("update", eidOf(1), 0)));
    EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(1))), "new");
}

TEST_F(QelEnvCacheTest, UpdateOfTypeWithoutUpdaterIsLogged) {
    insert(makeEnv(eidOf(1), "old", type));
    const LogCapture log;
    EXPECT_EQ(envCache()->update(makeEnv(eidOf(1), "new", type)), 0);
    EXPECT_THAT(log.messages(), ElementsAre(noUpdater("mock"), called("update", eidOf(1), 0)));
}

TEST_F(QelEnvCacheTest, UpdaterCanRejectUpdate) {
    insert(makeEnv(eidOf(1), "old", type));
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, checkEnv).WillOnce(Return(0));
    EXPECT_CALL(*updater, updateEnv).WillOnce(Return(-8));
    const LogCapture log;
    EXPECT_EQ(envCache()->update(makeEnv(eidOf(1), "new", type)), -8);
    EXPECT_THAT(log.messages(), ElementsAre(called("update", eidOf(1), -8)));
    EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(1))), "old");
}

TEST_F(QelEnvCacheTest, UninterestedUpdaterIsNotCalledForUpdate) {
    insert(makeEnv(eidOf(1), "old", type));
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, checkEnv).WillOnce(Return(-1));
    EXPECT_EQ(envCache()->update(makeEnv(eidOf(1), "new", type)), 0);
    EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(1))), "new");
}

TEST_F(QelEnvCacheTest, UpdateOfUnknownEnvironmentCallsRemoveOfUpdater) {
    const RegisteredUpdater updater(type);
    {
        const InSequence order;
        EXPECT_CALL(*updater, checkEnv).WillOnce(Return(0));
        EXPECT_CALL(*updater, updateEnv).WillOnce(Return(0));
        EXPECT_CALL(*updater, removeEnv(eidOf(1))).WillOnce(Return(0));
    }
    const LogCapture log;
    EXPECT_EQ(envCache()->update(makeEnv(eidOf(1), "new", type)), -6);
    EXPECT_THAT(log.messages(), ElementsAre(called("update", eidOf(1), -6)));
}

// ---- remove

TEST_F(QelEnvCacheTest, RemovingUnknownEnvironmentSucceedsWithoutLogging) {
    const RegisteredUpdater updater(type);
    ASSERT_TRUE(envCache());
    const LogCapture log;
    EXPECT_EQ(envCache()->remove(eidOf(1)), 0);
    EXPECT_EQ(envCache()->remove(QelEID()), 0);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(QelEnvCacheTest, UpdaterIsCalledBeforeRemoveReachesFile) {
    insert(makeEnv(eidOf(1), "one", type));
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, removeEnv(eidOf(1))).WillOnce([](const QelEID& eid) {
        EXPECT_TRUE(envCache()->getEnvCopy(eid));
        return 0;
    });
    const LogCapture log;
    EXPECT_EQ(envCache()->remove(eidOf(1)), 0);
    EXPECT_THAT(log.messages(), ElementsAre(called("remove", eidOf(1), 0)));
    EXPECT_FALSE(envCache()->getEnvCopy(eidOf(1)));
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(QelEnvCacheTest, UpdaterCanRejectRemove) {
    insert(makeEnv(eidOf(1), "one", type));
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, removeEnv).WillOnce(Return(5));
    const LogCapture log;
    EXPECT_EQ(envCache()->remove(eidOf(1)), 5);
    EXPECT_THAT(log.messages(), ElementsAre(called("remove", eidOf(1), 5)));
    EXPECT_TRUE(envCache()->getEnvCopy(eidOf(1)));
}

TEST_F(QelEnvCacheTest, RemovalOfTypeWithoutUpdaterDoesNotLogIt) {
    insert(makeEnv(eidOf(1), "one", type));
    const LogCapture log;
    EXPECT_EQ(envCache()->remove(eidOf(1)), 0);
    EXPECT_THAT(log.messages(), ElementsAre(called("remove", eidOf(1), 0)));
}

TEST_F(QelEnvCacheTest, RemovalFailsIfAnotherProcessRemovesFirst) {
    insert(makeEnv(eidOf(1), "one", type));
    const QelEnvCacheSP other = attachAgain();
    const RegisteredUpdater updater(type);
    EXPECT_CALL(*updater, removeEnv).WillOnce([&](const QelEID& eid) { return other->remove(eid); });
    EXPECT_EQ(envCache()->remove(eidOf(1)), -6);
}

// ---- reading

TEST_F(QelEnvCacheTest, CopyIsWritableAndIndependent) {
    insert(makeEnv(eidOf(1), "one"));
    const boost::shared_ptr<QelEnv> copy = envCache()->getEnvCopy(eidOf(1));
    ASSERT_TRUE(copy);
    copy->setStatus({7, 8});
    copy->getConfig()->setName(specified("changed"));
    EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(1))), "one");
    EXPECT_EQ(envCache()->remove(eidOf(1)), 0);
    EXPECT_EQ(nameOf(copy), "changed");
    EXPECT_FALSE(envCache()->getEnvCopy(eidOf(1)));
}

TEST_F(QelEnvCacheTest, CopyHasClassOfItsType) {
    const KeyedEnvFactory keyed;
    insert(makeEnv(eidOf(1), "one", KeyedEnvFactory::type));
    EXPECT_TRUE(boost::dynamic_pointer_cast<KeyedEnv>(envCache()->getEnvCopy(eidOf(1))));
    EXPECT_TRUE(boost::dynamic_pointer_cast<const KeyedEnv>(envCache()->getEnvList()->getEnv(eidOf(1))));
}

TEST_F(QelEnvCacheTest, ListIsSnapshotOfItsCreation) {
    insert(makeEnv(eidOf(1), "old"));
    const auto list = envCache()->getEnvList();
    ASSERT_EQ(envCache()->update(makeEnv(eidOf(1), "new")), 0);
    insert(makeEnv(eidOf(2), "two"));
    EXPECT_EQ(list->size(), 1U);
    EXPECT_EQ(nameOf(list->getEnv(eidOf(1))), "old");
    EXPECT_FALSE(list->getEnv(eidOf(2)));
    EXPECT_EQ(nameOf(envCache()->getEnvList()->getEnv(eidOf(1))), "new");
}

TEST_F(QelEnvCacheTest, EnvironmentOfListReadsFromFile) {
    insert(makeEnv(eidOf(1), "one"));
    const auto list = envCache()->getEnvList();
    const LogCapture log;
    const QelEnvCSP env = list->getEnv(eidOf(1));
    ASSERT_TRUE(env);
    EXPECT_EQ(env->getCoreBasic().get(), list->get(eidOf(1)));
    EXPECT_EQ(nameOf(env), "one");
    EXPECT_FALSE(list->getEnv(eidOf(2)));
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(QelEnvCacheTest, SeventeenthListFailsUntilOneIsReleased) {
    std::vector<QelEnvCache::EnvValuesListPtr> lists;
    for (int i = 0; i < 16; ++i) {
        lists.push_back(envCache()->getEnvList());
        ASSERT_TRUE(lists.back()) << i;
    }
    EXPECT_EQ(snapshotReferences(), 17U);
    EXPECT_FALSE(envCache()->getEnvList());
    EXPECT_TRUE(attachAgain()->getEnvList()) << "each cache object has its own limit";
    lists.pop_back();
    EXPECT_TRUE(envCache()->getEnvList());
    lists.clear();
    EXPECT_EQ(snapshotReferences(), 1U);
    EXPECT_THAT(findings(), IsEmpty());
}

// ---- synchronising the updater of the generic type

TEST_F(QelEnvCacheTest, GenericUpdaterReceivesChildrenOfEnvironment) {
    for (const int number : {3, 1, 2})
        insert(makeEnv(eidOf(number), "env", type, eidOf(number == 2 ? 9 : 7)));
    const RegisteredUpdater updater(QelEnv::type);
    EXPECT_CALL(*updater, syncEnvList(eidOf(7), ElementsAre(eidOf(1), eidOf(3))));
    EXPECT_CALL(*updater, syncEnvList(eidOf(8), IsEmpty()));
    const LogCapture log;
    envCache()->syncEnvListOf(eidOf(7));
    envCache()->syncEnvListOf(eidOf(8));
    EXPECT_THAT(log.messages(), IsEmpty());
    EXPECT_EQ(snapshotReferences(), 1U) << "the list was released";
}

TEST_F(QelEnvCacheTest, GenericUpdaterReceivesSlavesWithInvalidParent) {
    const RegisteredUpdater updater(QelEnv::type);
    EXPECT_CALL(*updater, syncEnvList(QelEID(), ElementsAre(eidOf(4), eidOf(5))));
    envCache()->syncSlaveList(QelEnvIDList{eidOf(5), eidOf(4)});
}

TEST_F(QelEnvCacheTest, MissingGenericUpdaterIsLogged) {
    ASSERT_TRUE(envCache());
    const LogCapture log;
    envCache()->syncEnvListOf(eidOf(1));
    envCache()->syncSlaveList({});
    EXPECT_THAT(log.messages(),
                ElementsAre("4 [syncEnvListOf] EnvUpdater is not found for 'generic'.", noUpdater("generic")));
}

TEST_F(QelEnvCacheTest, FailureToListChildrenIsLogged) {
    std::vector<QelEnvCache::EnvValuesListPtr> lists;
    for (int i = 0; i < 16; ++i)
        lists.push_back(envCache()->getEnvList());
    const RegisteredUpdater updater(QelEnv::type);
    const LogCapture log;
    envCache()->syncEnvListOf(eidOf(1));
    EXPECT_THAT(log.messages(), ElementsAre("1 [syncEnvListOf]: failed to acquire environments list."));
}

// ---- fork

TEST_F(QelEnvCacheTest, ForkedChildAttachesAgainAndItsOldListIsEmpty) {
    insert(makeEnv(eidOf(1), "one"));
    const QelEnvCacheSP cache = envCache();
    QelEnvCache::EnvValuesListPtr list = cache->getEnvList();
    ASSERT_EQ(snapshotReferences(), 2U);
    EXPECT_EQ(inChild([&] {
                  if (cache->isAccessible() || list->isAccessible() || list->size() != 0)
                      return 1;
                  if (!(list->begin() == list->end()) || list->get(eidOf(1)))
                      return 2;
                  const Cache::Iterator::Children::Keys keys(QelEID(), list);
                  if (keys.begin() != keys.end())
                      return 3;
                  const LogCapture log;
                  if (list->getEnv(eidOf(1)) ||
                      log.messages() != std::vector<std::string>{
                                            "2 Environment cache: failed to acquire snapshot. Running out of memory."})
                      return 4;
                  list.reset();
                  if (snapshotReferences() != 2)
                      return 5;
                  const QelEnvCacheSP own = envCache();
                  if (!own || own == cache || !own->isAccessible() || envCache() != own)
                      return 6;
                  if (nameOf(own->getEnvCopy(eidOf(1))) != "one" || own->insert(makeEnv(eidOf(2), "two")) != 0)
                      return 7;
                  return cache->insert(makeEnv(eidOf(3))) == cacheNotAttached ? 0 : 8;
              }),
              0);
    EXPECT_EQ(envCache(), cache) << "the parent is not affected";
    EXPECT_EQ(nameOf(list->getEnv(eidOf(1))), "one");
    EXPECT_EQ(list->size(), 1U);
    EXPECT_EQ(nameOf(cache->getEnvCopy(eidOf(2))), "two");
    list.reset();
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(QelEnvCacheTest, ListsOfParentDoNotCountAgainstChild) {
    std::vector<QelEnvCache::EnvValuesListPtr> lists;
    for (int i = 0; i < 16; ++i)
        lists.push_back(envCache()->getEnvList());
    EXPECT_EQ(inChild([] { return envCache()->getEnvList() ? 0 : 1; }), 0);
}

// ---- threads

TEST_F(QelEnvCacheTest, ThreadsReadAndWriteConcurrently) {
    constexpr int writers = 2;
    constexpr int readers = 2;
    constexpr int keys = 12;
    constexpr int steps = 300;
    ASSERT_TRUE(envCache());
    // Each writer has its own keys.  The name of an environment contains its key and grows with each step.
    const auto nameAt = [](int key, int step) {
        return std::to_string(key) + ':' + std::string(static_cast<std::size_t>(1 + (step * 37) % 500), 'x');
    };
    std::vector<std::thread> threads;
    for (int writer = 0; writer < writers; ++writer)
        threads.emplace_back([&, writer] {
            for (int step = 0; step < steps; ++step) {
                const int key = 100 * writer + step % keys + 1;
                const QelEnv env = makeEnv(eidOf(key), nameAt(key, step), type, eidOf(writer + 1));
                if (step < keys)
                    EXPECT_EQ(envCache()->insert(env), 0);
                else if (step % 7 != 0)
                    EXPECT_EQ(envCache()->update(env), 0);
                else {
                    EXPECT_EQ(envCache()->remove(env.getEID()), 0);
                    EXPECT_EQ(envCache()->insert(env), 0);
                }
            }
        });
    for (int reader = 0; reader < readers; ++reader)
        threads.emplace_back([&] {
            for (int round = 0; round < steps / 4; ++round) {
                const auto list = envCache()->getEnvList();
                ASSERT_TRUE(list);
                for (auto at = list->begin(); !(at == list->end()); ++at) {
                    unsigned long long key;
                    unsigned long long rest;
                    at->getEID().getData(key, rest);
                    EXPECT_EQ(nameOf(at.operator->()).find(std::to_string(key) + ':'), 0U);
                }
                EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(999))), "(none)");
            }
        });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(envCache()->getEnvList()->size(), std::size_t{writers} * keys);
    for (int step = steps - keys; step < steps; ++step)
        for (int writer = 0; writer < writers; ++writer) {
            const int key = 100 * writer + step % keys + 1;
            EXPECT_EQ(nameOf(envCache()->getEnvCopy(eidOf(key))), nameAt(key, step));
        }
    EXPECT_THAT(findings(), IsEmpty());
}

} // namespace
} // namespace Qel
