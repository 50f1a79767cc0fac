#include "QelFunctionalityCore/Environment/QelEnv.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

using Addresses = std::vector<QelIPAddress>;

QelAlertReason reason(int index) {
    return static_cast<QelAlertReason>(index);
}

Addresses addresses(const std::vector<std::string>& texts) {
    Addresses list;
    for (const std::string& text : texts)
        list.emplace_back(text);
    return list;
}

const QelEnv& asConst(const QelEnv& env) {
    return env;
}

TEST(QelEnvTest, DefaultTypeIsGeneric) {
    EXPECT_EQ(QelEnv::type, "generic");
}

TEST(QelEnvTest, NewEnvironmentIsBlank) {
    const QelEnv env;
    EXPECT_EQ(env.getEID(), QelEID());
    EXPECT_EQ(env.getParentEID(), QelEID());
    EXPECT_EQ(env.getStatus(), QelEnvStatus(1, 0));
    EXPECT_FALSE(env.getType().isSpecified());
    EXPECT_EQ(env.getMaxAlertType(), QelAlertType::green);
    EXPECT_EQ(env.getSortKey(), 0U);
    EXPECT_EQ(valueBy(*env.getConfig(), &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(valueBy(*env.getVirtualConfig(), &QelEnvConfig::getName), "(fails)");
}

TEST(QelEnvTest, SettersWriteToRecord) {
    QelEnv env;
    env.setParentEID(otherEID);
    env.setStatus({5, 6});
    env.setAlertType(reason(0), QelAlertType::yellow);
    env.setAlertType(reason(4), QelAlertType::black);
    const auto core = env.getCoreBasic();
    EXPECT_EQ(core->parentEID, otherEID);
    EXPECT_EQ(core->status, QelEnvStatus(5, 6));
    EXPECT_EQ(core->alertType[0], QelAlertType::yellow);
    EXPECT_EQ(core->alertType[4], QelAlertType::black);
    EXPECT_EQ(env.getAlertType(reason(4)), QelAlertType::black);
    EXPECT_EQ(env.getAlertType(reason(3)), QelAlertType::green);
}

TEST(QelEnvTest, MaximumOfAlertLevelsIsWorst) {
    QelEnv env;
    env.setAlertType(reason(2), QelAlertType::red);
    env.setAlertType(reason(3), QelAlertType::yellow);
    EXPECT_EQ(env.getMaxAlertType(), QelAlertType::red);
    for (int i = 0; i < qelAlertReasonCount; ++i)
        env.setAlertType(reason(i), static_cast<QelAlertType>(-1));
    EXPECT_EQ(env.getMaxAlertType(), QelAlertType::green) << "never below 0";
}

TEST(QelEnvTest, IsViewOfRecord) {
    const auto record = recordOf("", "");
    record->eid = someEID;
    record->type = "vm";
    const QelEnv env(record);
    EXPECT_EQ(env.getCoreBasic(), record);
    EXPECT_EQ(env.getEID(), someEID);
    EXPECT_EQ(env.getType(), "vm");
}

TEST(QelEnvTest, IsCreatedFromConfigurations) {
    const boost::shared_ptr<QelEnvConfig> config(new QelEnvConfig);
    config->setName(specified("base"));
    const boost::shared_ptr<QelVEnvConfig> vconfig(new QelVEnvConfig);
    vconfig->setName(specified("virtual"));
    const QelEnv both(someEID, config, vconfig);
    EXPECT_EQ(both.getEID(), someEID);
    EXPECT_EQ(valueBy(*both.getConfig(), &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*both.getVirtualConfig(), &QelEnvConfig::getName), "virtual");
    const QelEnv base(someEID, config);
    EXPECT_EQ(base.getEID(), someEID);
    EXPECT_EQ(valueBy(*base.getConfig(), &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*base.getVirtualConfig(), &QelEnvConfig::getName), "(fails)");
    const QelEnv virtualised(someEID, vconfig);
    EXPECT_EQ(virtualised.getEID(), someEID);
    EXPECT_EQ(valueBy(*virtualised.getConfig(), &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(valueBy(*virtualised.getVirtualConfig(), &QelEnvConfig::getName), "virtual");
}

TEST(QelEnvDeathTest, NullRecordTerminatesProcess) {
    EXPECT_DEATH(QelEnv(boost::shared_ptr<QelEnvCoreBasic>()), "core/src/QelFunctionalityCore/QelEnv:");
}

/// Whether getBuffer() creates a new record, which happens only if a configuration is marked as changed.
bool makesNewRecord(QelEnv& env) {
    const auto before = env.getCoreBasic();
    env.syncBuffer();
    return env.getCoreBasic() != before;
}

TEST(QelEnvTest, OnlyNonConstGettersMarkConfigurationAsChanged) {
    QelEnv env;
    static_cast<void>(asConst(env).getConfig());
    static_cast<void>(asConst(env).getVirtualConfig());
    EXPECT_FALSE(makesNewRecord(env));
    static_cast<void>(env.getConfig());
    EXPECT_TRUE(makesNewRecord(env));
    EXPECT_FALSE(makesNewRecord(env));
    static_cast<void>(env.getVirtualConfig());
    EXPECT_TRUE(makesNewRecord(env));
}

TEST(QelEnvTest, NewRecordWithoutChangesEqualsOldOne) {
    const boost::shared_ptr<QelEnvConfig> config(new QelEnvConfig);
    config->setName(specified("base"));
    config->setType("vm");
    QelEnv env(someEID, config);
    const auto before = env.getCoreBasic();
    static_cast<void>(env.getConfig());
    const void* address = nullptr;
    unsigned length = 0;
    EXPECT_EQ(env.getBuffer(&address, length, "ignored"), 0);
    EXPECT_NE(address, before.get());
    ASSERT_EQ(length, before->length());
    EXPECT_EQ(std::string(static_cast<const char*>(address), length),
              std::string(reinterpret_cast<const char*>(before.get()), length));
}

TEST(QelEnvTest, SyncBufferWritesChangesToRecord) {
    QelEnv env;
    env.getConfig()->setName(specified("changed"));
    env.syncBuffer();
    EXPECT_EQ(valueBy(*QelEnv(env.getCoreBasic()).getConfig(), &QelEnvConfig::getName), "changed");
}

TEST(QelEnvTest, BufferOfUnserialisableConfigurationFails) {
    QelEnv env;
    *env.getConfig() = QelEnvConfig(&TooDeepMessage().cursor(), EnvConfigType::base);
    unsigned length = 0;
    EXPECT_EQ(env.getBuffer(nullptr, length, nullptr), -1);
}

class QelEnvTitleTest : public testing::Test {
protected:
    QelEnvConfig& base() { return *env.getConfig(); }
    QelVEnvConfig& virtualised() { return *env.getVirtualConfig(); }

    QelEnv env{recordWithEID()};

private:
    static boost::shared_ptr<QelEnvCoreBasic> recordWithEID() {
        auto record = recordOf("", "");
        record->eid = someEID;
        return record;
    }
};

TEST_F(QelEnvTitleTest, EarlierRulesTakePrecedence) {
    EXPECT_EQ(env.getTitle(), someEID.toString());
    base().setAddresses(specified(addresses({"10.0.0.1/24"})));
    EXPECT_EQ(env.getTitle(), "10.0.0.1");
    virtualised().setAddresses(specified(addresses({"10.0.0.2"})));
    EXPECT_EQ(env.getTitle(), "10.0.0.2");
    base().setHostname(specified("base host"));
    EXPECT_EQ(env.getTitle(), "base host");
    virtualised().setHostname(specified("virtual host"));
    EXPECT_EQ(env.getTitle(), "virtual host");
    base().setName(specified("base name"));
    EXPECT_EQ(env.getTitle(), "base name");
    virtualised().setName(specified("virtual name"));
    EXPECT_EQ(env.getTitle(), "virtual name");
}

TEST_F(QelEnvTitleTest, SpecifiedEmptyNameIsTitle) {
    base().setName(specified("base name"));
    virtualised().setName(specified(""));
    EXPECT_EQ(env.getTitle(), "");
}

TEST_F(QelEnvTitleTest, SpecifiedEmptyHostNameIsTitle) {
    base().setAddresses(specified(addresses({"10.0.0.1"})));
    base().setHostname(specified(""));
    EXPECT_EQ(env.getTitle(), "");
}

TEST_F(QelEnvTitleTest, FirstIPv4AddressIsPreferred) {
    base().setAddresses(specified(addresses({"::1", "10.0.0.1", "10.0.0.2"})));
    EXPECT_EQ(env.getTitle(), "10.0.0.1");
    base().setAddresses(specified(addresses({"", "::1", "10.0.0.1"})));
    EXPECT_EQ(env.getTitle(), "10.0.0.1");
}

TEST_F(QelEnvTitleTest, FirstAddressIsUsedWithoutIPv4Address) {
    base().setAddresses(specified(addresses({"::1"})));
    EXPECT_EQ(env.getTitle(), "::1");
    base().setAddresses(specified(addresses({"fe80::2", "::1"})));
    EXPECT_EQ(env.getTitle(), "fe80::2");
    base().setAddresses(specified(addresses({"", "::1"})));
    EXPECT_EQ(env.getTitle(), "");
}

TEST_F(QelEnvTitleTest, EmptyAddressListIsSkipped) {
    virtualised().setAddresses(specified(Addresses()));
    EXPECT_EQ(env.getTitle(), someEID.toString());
    base().setAddresses(specified(addresses({"::1"})));
    EXPECT_EQ(env.getTitle(), "::1");
}

TEST_F(QelEnvTitleTest, DamagedConfigurationsDoNotAffectIdentity) {
    const auto record = recordOf("damaged", "damaged, too");
    record->eid = someEID;
    record->status = {3, 4};
    record->type = "vm";
    const QelEnv damaged(record);
    EXPECT_EQ(damaged.getEID(), someEID);
    EXPECT_EQ(damaged.getStatus(), QelEnvStatus(3, 4));
    EXPECT_EQ(damaged.getType(), "vm");
    EXPECT_EQ(damaged.getTitle(), someEID.toString());
}

TEST_F(QelEnvTitleTest, ConfigurationsAreParsedOnDemand) {
    base().setName(specified("base name"));
    env.syncBuffer();
    const auto record = env.getCoreBasic();
    const QelEnv view(record);
    EXPECT_EQ(view.getEID(), someEID);
    const_cast<char*>(record->configBytes())[0] ^= 1;
    EXPECT_EQ(view.getTitle(), someEID.toString());
}

/// An environment that supplies another view as its virtual configuration.
struct OtherViewEnv : QelEnv {
    using QelEnv::getVirtualConfig;
    [[nodiscard]] boost::shared_ptr<const QelVEnvConfig> getVirtualConfig() const override { return other; }
    boost::shared_ptr<QelVEnvConfig> other;
};

TEST_F(QelEnvTitleTest, DerivedClassMaySupplyAnotherView) {
    OtherViewEnv derived;
    derived.getConfig()->setName(specified("base name"));
    EXPECT_EQ(derived.getTitle(), "base name");
    derived.other.reset(new QelVEnvConfig);
    derived.other->setName(specified("other view"));
    EXPECT_EQ(derived.getTitle(), "other view");
}

} // namespace
} // namespace Qel
