#include "qel/env/EnvWatcher.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tools/SampleEnvs.h"
#include "tools/ToolRun.h"

namespace {

using namespace Qel;
using namespace Qel::Tool;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

class EnvWatcherTest : public ToolTest {
protected:
    void SetUp() override {
        cache.reset(new QelEnvCache(path("cache")));
        ASSERT_EQ(cache->initialize(true, false), 0);
    }

    void put(const std::string& env) {
        const ToolRun run = runTool({"env", "put", path("cache"), "-"}, SampleEnvs::message(env));
        ASSERT_EQ(run.code, ExitCode::success) << run.err;
    }

    std::vector<EnvChange> poll() { return watcher.poll(*cache->getEnvList()); }

    static auto isChange(EnvChange::Kind kind, unsigned number, const std::string& title,
                         const std::string& parts = "") {
        QelEID eid;
        EXPECT_EQ(eid.fromString(SampleEnvs::eid(number).c_str()), 0);
        return AllOf(Field(&EnvChange::kind, kind), Field(&EnvChange::eid, eid), Field(&EnvChange::title, title),
                     Field(&EnvChange::parts, parts));
    }

    static std::string env(unsigned number, const std::string& name, int state = 1, unsigned parent = 9) {
        return SampleEnvs::env(SampleEnvs::eid(number), SampleEnvs::eid(parent), name, state);
    }

    using Kind = EnvChange::Kind;
    QelEnvCacheSP cache;
    EnvWatcher watcher;
};

TEST_F(EnvWatcherTest, EmptyCacheHasNoChanges) {
    EXPECT_THAT(poll(), IsEmpty());
}

TEST_F(EnvWatcherTest, FirstPollReportsAllEnvironmentsAsAdded) {
    put(env(2, "b") + env(1, "a"));
    EXPECT_THAT(poll(), ElementsAre(isChange(Kind::added, 1, "a"), isChange(Kind::added, 2, "b")));
    EXPECT_THAT(poll(), IsEmpty());
}

TEST_F(EnvWatcherTest, ReportsAddedChangedAndRemovedEnvironmentsInOrder) {
    put(env(1, "a") + env(3, "c") + env(5, "e"));
    (void)poll();
    put(env(2, "b") + env(3, "c", 7));
    (void)runTool({"env", "remove", path("cache"), SampleEnvs::eid(1), SampleEnvs::eid(5)});
    EXPECT_THAT(poll(), ElementsAre(isChange(Kind::removed, 1, "a"), isChange(Kind::added, 2, "b"),
                                    isChange(Kind::changed, 3, "c", "status"), isChange(Kind::removed, 5, "e")));
    EXPECT_THAT(poll(), IsEmpty());
}

TEST_F(EnvWatcherTest, UpdateWithoutChangeIsNotReported) {
    put(env(1, "a"));
    (void)poll();
    put(env(1, "a"));
    EXPECT_THAT(poll(), IsEmpty());
}

TEST_F(EnvWatcherTest, ReportsChangedParts) {
    put(env(1, "a"));
    (void)poll();
    put(env(1, "a", 1, 8));
    EXPECT_THAT(poll(), ElementsAre(isChange(Kind::changed, 1, "a", "parent")));
    put(env(1, "b", 1, 8));
    EXPECT_THAT(poll(), ElementsAre(isChange(Kind::changed, 1, "b", "virtual configuration")));

    QelEID eid;
    ASSERT_EQ(eid.fromString(SampleEnvs::eid(1).c_str()), 0);
    const boost::shared_ptr<QelEnv> changed = cache->getEnvCopy(eid);
    changed->setStatus({5, 6});
    changed->setAlertType(QelAlertReason{4}, QelAlertType::black);
    ASSERT_EQ(cache->update(*changed), 0);
    EXPECT_THAT(poll(), ElementsAre(isChange(Kind::changed, 1, "b", "status, alerts")));
}

TEST_F(EnvWatcherTest, HoldsNoSnapshotBetweenPolls) {
    put(env(1, "a"));
    (void)poll();
    EXPECT_THAT(runTool({"cache", "info", path("cache")}).out, testing::ContainsRegex("snapshot references +1\n"));
}

TEST_F(EnvWatcherTest, CacheInfoReportsSameSizesAsLibrary) {
    put(env(1, "a") + env(2, "b") + env(3, "c"));
    const auto info = nlohmann::json::parse(runTool({"cache", "info", path("cache"), "--json"}).out);
    EXPECT_EQ(info["achievableSize"], cache->getAchiveableSize());
    EXPECT_EQ(info["used"], cache->getTotalAllocatedSize());
}

} // namespace
