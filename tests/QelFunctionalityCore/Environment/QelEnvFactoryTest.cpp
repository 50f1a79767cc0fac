#include "QelFunctionalityCore/Environment/QelEnvFactory.h"

#include <type_traits>

#include <gmock/gmock.h>

#include "EnvTestSupport.h"
#include "QelFunctionalityCore/Environment/QelEnvUpdater.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

QelEnvFactory& factories() {
    return QelEnvFactory::getInstance();
}

boost::shared_ptr<QelEnvCoreBasic> recordOfType(const QelEnvType& type) {
    auto record = recordOf("", "");
    record->type = type;
    return record;
}

TEST(QelEnvFactoryTest, IsSingleton) {
    EXPECT_EQ(&QelEnvFactory::getInstance(), &QelEnvFactory::getInstance());
    EXPECT_FALSE(std::is_copy_constructible_v<QelEnvFactory>);
    EXPECT_FALSE(std::is_copy_assignable_v<QelEnvFactory>);
}

TEST(QelEnvFactoryTest, UnknownTypeCreatesPlainEnvironmentOnlyOverRecord) {
    EXPECT_EQ(factories().createEnv(QelEnvType("unknown")), nullptr);
    EXPECT_EQ(factories().createEnv(QelEnvType()), nullptr);

    const auto record = recordOfType("unknown");
    const auto env = factories().createEnv(record);
    EXPECT_EQ(typeOf(*env), typeid(QelEnv));
    EXPECT_EQ(env->getCoreBasic(), record);
    const auto vconfig = factories().createVEnvConfig(record);
    EXPECT_EQ(typeOf(*vconfig), typeid(QelVEnvConfig));
    EXPECT_EQ(&vconfig->getType(), &record->type);
}

struct TestVEnvConfig : QelVEnvConfig {
    using QelVEnvConfig::QelVEnvConfig;
};

TEST(QelEnvFactoryTest, KnownTypeCreatesObjectsOfItsChildFactory) {
    const RegisteredFactory factory("known");
    factory->fresh = [] { return boost::shared_ptr<QelEnvBase>(new TestEnv); };
    factory->over = [](const boost::shared_ptr<QelEnvCoreBasic>& core) {
        return boost::shared_ptr<QelEnvBase>(new TestEnv(core));
    };
    factory->vconfig = [](const boost::shared_ptr<QelEnvCoreBasic>& core) {
        return boost::shared_ptr<QelVEnvConfig>(new TestVEnvConfig(core));
    };
    EXPECT_EQ(typeOf(*factories().createEnv(QelEnvType("known"))), typeid(TestEnv));
    const auto record = recordOfType("known");
    const auto env = factories().createEnv(record);
    EXPECT_EQ(typeOf(*env), typeid(TestEnv));
    EXPECT_EQ(env->getCoreBasic(), record);
    EXPECT_EQ(typeOf(*factories().createVEnvConfig(record)), typeid(TestVEnvConfig));
    EXPECT_EQ(typeOf(*QelEnv(record).getVirtualConfig()), typeid(TestVEnvConfig));

    EXPECT_EQ(factories().createEnv(QelEnvType("known2")), nullptr) << "other types are not affected";
}

TEST(QelEnvFactoryTest, ObjectOfWrongClassIsNull) {
    const RegisteredFactory factory("wrong");
    factory->fresh = [] { return boost::shared_ptr<QelEnvBase>(new ForeignEnv); };
    factory->over = [](const boost::shared_ptr<QelEnvCoreBasic>&) {
        return boost::shared_ptr<QelEnvBase>(new ForeignEnv);
    };
    EXPECT_EQ(factories().createEnv(QelEnvType("wrong")), nullptr);
    EXPECT_EQ(factories().createEnv(recordOfType("wrong")), nullptr);
}

TEST(QelEnvFactoryTest, EmptyAndUnspecifiedTypesDiffer) {
    const RegisteredFactory factory("");
    factory->fresh = [] { return boost::shared_ptr<QelEnvBase>(new TestEnv); };
    EXPECT_NE(factories().createEnv(QelEnvType("")), nullptr);
    EXPECT_EQ(factories().createEnv(QelEnvType()), nullptr);
}

TEST(QelEnvFactoryDeathTest, NullRecordTerminatesProcess) {
    const boost::shared_ptr<QelEnvCoreBasic> none;
    EXPECT_DEATH(static_cast<void>(factories().createEnv(none)), "core/src/QelFunctionalityCore/QelEnv:");
    EXPECT_DEATH(static_cast<void>(factories().createVEnvConfig(none)), "core/src/QelFunctionalityCore/QelEnv:");
}

struct SilentUpdater : QelEnvUpdater {
    int insertEnv(const QelEnv&) override { return 0; }
    int updateEnv(const QelEnv&) override { return 0; }
    int removeEnv(const QelEID&) override { return 0; }
    void syncEnvList(const QelEID&, const QelEnvIDList&) override {}
    int checkEnv(const QelEnv&) override { return 0; }
};

TEST(QelEnvFactoryTest, FindsUpdaterOfType) {
    EXPECT_EQ(factories().getEnvUpdater("updated"), nullptr);
    const boost::shared_ptr<QelEnvUpdater> updater(new SilentUpdater);
    factories().setEnvUpdater("updated", updater);
    EXPECT_EQ(factories().getEnvUpdater("updated"), updater);
    EXPECT_EQ(factories().getEnvUpdater("other"), nullptr);
    factories().setEnvUpdater("updated", {});
    EXPECT_EQ(factories().getEnvUpdater("updated"), nullptr);
}

} // namespace
} // namespace Qel
