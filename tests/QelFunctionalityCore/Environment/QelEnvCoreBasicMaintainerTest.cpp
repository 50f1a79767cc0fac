#include "QelFunctionalityCore/Environment/QelEnvCoreBasicMaintainer.h"

#include <cstring>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

using Maintainer = QelEnvCoreBasicMaintainer;
using ConfigSP = boost::shared_ptr<QelEnvConfig>;
using VConfigSP = boost::shared_ptr<QelVEnvConfig>;

template <class Config> boost::shared_ptr<Config> named(const char* name, const QelEnvType& type = {}) {
    boost::shared_ptr<Config> config(new Config);
    config->setName(specified(name));
    if (type.isSpecified())
        config->setType(type);
    return config;
}

/// The record that a maintainer creates from two configurations.
boost::shared_ptr<QelEnvCoreBasic> namedRecord(const char* base, const char* virtualised) {
    return Maintainer(someEID, named<QelEnvConfig>(base), named<QelVEnvConfig>(virtualised)).m_core;
}

std::string bytesBy(Maintainer& maintainer, int expected = 0) {
    const void* address = nullptr;
    unsigned length = 0;
    EXPECT_EQ(maintainer.getBuffer(&address, length, nullptr), expected);
    return {static_cast<const char*>(address), length};
}

void expectClean(const Maintainer& maintainer) {
    EXPECT_FALSE(maintainer.configDirty);
    EXPECT_FALSE(maintainer.vconfigDirty);
}

TEST(QelEnvCoreBasicMaintainerTest, StartsWithBlankRecordAndEmptyConfigurations) {
    Maintainer maintainer;
    expectClean(maintainer);
    EXPECT_EQ(maintainer.m_config->getConfigType(), EnvConfigType::base);
    EXPECT_EQ(maintainer.m_vconfig->getConfigType(), EnvConfigType::virtualised);
    EXPECT_EQ(valueBy(*maintainer.m_config, &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(bytesBy(maintainer).size(), 92U);
    EXPECT_EQ(&maintainer.m_config->getType(), &maintainer.m_core->type) << "the views share the record";
    EXPECT_EQ(&maintainer.m_vconfig->getType(), &maintainer.m_core->type);
}

TEST(QelEnvCoreBasicMaintainerTest, IsViewOfRecord) {
    const auto record = namedRecord("base", "virtual");
    Maintainer maintainer(record);
    expectClean(maintainer);
    EXPECT_EQ(maintainer.m_core, record);
    EXPECT_EQ(valueBy(*maintainer.m_config, &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*maintainer.m_vconfig, &QelEnvConfig::getName), "virtual");
    const void* address = nullptr;
    unsigned length = 0;
    EXPECT_EQ(maintainer.getBuffer(&address, length, nullptr), 0);
    EXPECT_EQ(address, record.get());
    EXPECT_EQ(maintainer.getBuffer(nullptr, length, nullptr), 0);
}

TEST(QelEnvCoreBasicMaintainerDeathTest, NullRecordOrConfigurationTerminatesProcess) {
    EXPECT_DEATH(Maintainer(boost::shared_ptr<QelEnvCoreBasic>()), "core/src/QelFunctionalityCore/QelEnv:");
    EXPECT_DEATH(Maintainer(someEID, ConfigSP(), named<QelVEnvConfig>("")), "core/src/QelFunctionalityCore/QelEnv:");
    EXPECT_DEATH(Maintainer(someEID, named<QelEnvConfig>(""), VConfigSP()), "core/src/QelFunctionalityCore/QelEnv:");
    EXPECT_DEATH(Maintainer(someEID, ConfigSP()), "core/src/QelFunctionalityCore/QelEnv:");
    EXPECT_DEATH(Maintainer(someEID, VConfigSP()), "core/src/QelFunctionalityCore/QelEnv:");
}

TEST(QelEnvCoreBasicMaintainerDeathTest, ConfigurationOfOtherTypeTerminatesProcess) {
    const ConfigSP virtualAsBase(
        new QelEnvConfig(static_cast<const QelMessageIterator*>(nullptr), EnvConfigType::virtualised));
    EXPECT_DEATH(Maintainer(someEID, virtualAsBase), "core/src/QelFunctionalityCore/QelEnv:");
    const VConfigSP baseAsVirtual(new QelVEnvConfig(*named<QelEnvConfig>("")));
    EXPECT_DEATH(Maintainer(someEID, baseAsVirtual), "core/src/QelFunctionalityCore/QelEnv:");
}

TEST(QelEnvCoreBasicMaintainerTest, CreatesRecordFromTwoConfigurations) {
    const Maintainer maintainer(someEID, named<QelEnvConfig>("base", "b"), named<QelVEnvConfig>("virtual", "v"));
    expectClean(maintainer);
    EXPECT_EQ(maintainer.m_core->eid, someEID);
    EXPECT_EQ(maintainer.m_core->parentEID, QelEID());
    EXPECT_EQ(maintainer.m_core->type, "v");
    EXPECT_EQ(valueBy(*maintainer.m_config, &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*maintainer.m_vconfig, &QelEnvConfig::getName), "virtual");
    EXPECT_EQ(maintainer.m_config->getAgentVersion(), 40500);
}

TEST(QelEnvCoreBasicMaintainerTest, CreatesRecordFromConfigurationsWithoutTrees) {
    const Maintainer maintainer(someEID, ConfigSP(new QelEnvConfig), VConfigSP(new QelVEnvConfig));
    EXPECT_EQ(maintainer.m_core->length(), 92U);
    EXPECT_EQ(maintainer.m_core->eid, someEID);
}

TEST(QelEnvCoreBasicMaintainerTest, CreatesRecordFromBaseConfigurationOnly) {
    const ConfigSP config = named<QelEnvConfig>("base", "b");
    const Maintainer maintainer(someEID, config);
    expectClean(maintainer);
    EXPECT_EQ(maintainer.m_core->eid, someEID);
    EXPECT_EQ(maintainer.m_core->type, "b");
    EXPECT_EQ(maintainer.m_core->vconfigSize, 0U);
    EXPECT_NE(maintainer.m_config, config) << "the view is replaced by one of the new record";
    EXPECT_EQ(valueBy(*maintainer.m_config, &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*maintainer.m_vconfig, &QelEnvConfig::getName), "(fails)");
}

TEST(QelEnvCoreBasicMaintainerTest, CreatesRecordFromVirtualConfigurationOnly) {
    const Maintainer maintainer(someEID, named<QelVEnvConfig>("virtual", "v"));
    expectClean(maintainer);
    EXPECT_EQ(maintainer.m_core->eid, someEID);
    EXPECT_EQ(maintainer.m_core->type, "v");
    EXPECT_EQ(maintainer.m_core->configSize, 0U);
    EXPECT_EQ(valueBy(*maintainer.m_config, &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(valueBy(*maintainer.m_vconfig, &QelEnvConfig::getName), "virtual");
}

TEST(QelEnvCoreBasicMaintainerTest, ConfigurationOfRecordKeepsOtherHalf) {
    const auto record = namedRecord("base", "virtual");
    record->parentEID = otherEID;
    const ConfigSP config(new QelEnvConfig(record, EnvConfigType::base));
    config->setName(specified("a new and longer name of the base configuration"));
    const Maintainer byBase(someEID, config);
    EXPECT_EQ(byBase.m_core->parentEID, otherEID);
    EXPECT_EQ(valueBy(*byBase.m_config, &QelEnvConfig::getName), "a new and longer name of the base configuration");
    EXPECT_EQ(valueBy(*byBase.m_vconfig, &QelEnvConfig::getName), "virtual");

    const VConfigSP vconfig(new QelVEnvConfig(record));
    vconfig->setName(specified("a new and longer name of the virtual configuration"));
    const Maintainer byVirtual(someEID, vconfig);
    EXPECT_EQ(valueBy(*byVirtual.m_config, &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*byVirtual.m_vconfig, &QelEnvConfig::getName),
              "a new and longer name of the virtual configuration");
}

TEST(QelEnvCoreBasicMaintainerTest, CopyHasRecordWithoutUnsavedChanges) {
    Maintainer original(namedRecord("base", "virtual"));
    original.m_config->setName(specified("changed"));
    original.configDirty = true;

    const Maintainer copy(original);
    expectClean(copy);
    EXPECT_NE(copy.m_core, original.m_core);
    EXPECT_EQ(copy.m_core->eid, someEID);
    EXPECT_EQ(valueBy(*copy.m_config, &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*copy.m_vconfig, &QelEnvConfig::getName), "virtual");

    Maintainer assigned;
    assigned.configDirty = assigned.vconfigDirty = true;
    assigned = original;
    expectClean(assigned);
    EXPECT_EQ(valueBy(*assigned.m_config, &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*original.m_config, &QelEnvConfig::getName), "changed");
}

TEST(QelEnvCoreBasicMaintainerTest, CopyOfMaintainerWithoutRecordHasNoRecord) {
    Maintainer without;
    without.m_core.reset();
    EXPECT_EQ(Maintainer(without).m_core, nullptr);
}

/// A factory that creates virtual configurations with a tree that is not in the record.
class UnsavedVirtualConfigTest : public testing::Test {
protected:
    UnsavedVirtualConfigTest() : factory("unsaved") {
        factory->vconfig = [](const boost::shared_ptr<QelEnvCoreBasic>& core) {
            VConfigSP config(new QelVEnvConfig(core));
            config->setDisabled(true);
            return config;
        };
        record->type = "unsaved";
    }

    RegisteredFactory factory;
    boost::shared_ptr<QelEnvCoreBasic> record = recordOf("", "");
};

TEST_F(UnsavedVirtualConfigTest, IsDirtyInCopyIfRecordDoesNotContainIt) {
    const Maintainer view(record);
    expectClean(view);
    const Maintainer copy(view);
    EXPECT_FALSE(copy.configDirty);
    EXPECT_TRUE(copy.vconfigDirty);
}

TEST_F(UnsavedVirtualConfigTest, IsDirtyInRecordOfTwoConfigurations) {
    const Maintainer maintainer(someEID, named<QelEnvConfig>("base", "unsaved"), VConfigSP(new QelVEnvConfig));
    EXPECT_FALSE(maintainer.configDirty);
    EXPECT_TRUE(maintainer.vconfigDirty);
}

TEST_F(UnsavedVirtualConfigTest, IsDirtyInRecordOfVirtualConfigurationWithoutTree) {
    const auto type = [](const QelEnvType& name) {
        const auto config = boost::make_shared<QelVEnvConfig>();
        config->setType(name);
        config->reset(false);
        return config;
    };
    const Maintainer maintainer(someEID, type("unsaved"));
    EXPECT_EQ(maintainer.m_core->vconfigSize, 0U);
    EXPECT_FALSE(maintainer.configDirty);
    EXPECT_TRUE(maintainer.vconfigDirty);
}

TEST_F(UnsavedVirtualConfigTest, IsCleanInRecordOfVirtualConfiguration) {
    const Maintainer maintainer(someEID, named<QelVEnvConfig>("virtual", "unsaved"));
    EXPECT_GT(maintainer.m_core->vconfigSize, 0U);
    expectClean(maintainer);
}

TEST_F(UnsavedVirtualConfigTest, IsCleanIfRecordContainsIt) {
    const Maintainer view(record);
    Maintainer copy(view);
    ASSERT_TRUE(copy.vconfigDirty);
    EXPECT_GT(bytesBy(copy).size(), 92U);
    expectClean(Maintainer(copy));
}

TEST_F(UnsavedVirtualConfigTest, IsIgnoredIfOnlyBaseConfigurationIsGiven) {
    const Maintainer maintainer(someEID, named<QelEnvConfig>("base", "unsaved"));
    expectClean(maintainer);
}

TEST(QelEnvCoreBasicMaintainerTest, DirtyHalfIsSerialisedIntoNewRecord) {
    const auto record = namedRecord("base", "virtual");
    record->status = {4, 5};
    Maintainer maintainer(record);
    maintainer.m_config->setName(specified("changed"));
    maintainer.configDirty = true;
    const std::string bytes = bytesBy(maintainer);
    expectClean(maintainer);
    EXPECT_NE(maintainer.m_core, record);
    EXPECT_EQ(bytes.size(), maintainer.m_core->length());
    EXPECT_EQ(&maintainer.m_config->getType(), &maintainer.m_core->type) << "the views moved to the new record";
    EXPECT_EQ(&maintainer.m_vconfig->getType(), &maintainer.m_core->type);

    const Maintainer again(maintainer.m_core);
    EXPECT_EQ(again.m_core->eid, someEID);
    EXPECT_EQ(again.m_core->status, QelEnvStatus(4, 5));
    EXPECT_EQ(valueBy(*again.m_config, &QelEnvConfig::getName), "changed");
    EXPECT_EQ(valueBy(*again.m_vconfig, &QelEnvConfig::getName), "virtual");
    EXPECT_EQ(valueBy(QelEnvConfig(record, EnvConfigType::base), &QelEnvConfig::getName), "base")
        << "the previous record is unchanged";
}

TEST(QelEnvCoreBasicMaintainerTest, BothHalvesMayBeDirty) {
    Maintainer maintainer(namedRecord("base", "virtual"));
    maintainer.m_config->setName(specified("base 2"));
    maintainer.m_vconfig->setName(specified("virtual 2"));
    maintainer.configDirty = maintainer.vconfigDirty = true;
    bytesBy(maintainer);
    const Maintainer again(maintainer.m_core);
    EXPECT_EQ(valueBy(*again.m_config, &QelEnvConfig::getName), "base 2");
    EXPECT_EQ(valueBy(*again.m_vconfig, &QelEnvConfig::getName), "virtual 2");
}

TEST(QelEnvCoreBasicMaintainerTest, CleanHalfIsNotSerialised) {
    Maintainer maintainer(namedRecord("base", "virtual"));
    maintainer.m_config->setName(specified("changed"));
    maintainer.vconfigDirty = true;
    bytesBy(maintainer);
    EXPECT_EQ(valueBy(QelEnvConfig(maintainer.m_core, EnvConfigType::base), &QelEnvConfig::getName), "base");
}

TEST(QelEnvCoreBasicMaintainerTest, DirtyHalvesWithoutTreesAreEmpty) {
    Maintainer maintainer;
    maintainer.configDirty = maintainer.vconfigDirty = true;
    EXPECT_EQ(bytesBy(maintainer).size(), 92U);
    expectClean(maintainer);
}

TEST(QelEnvCoreBasicMaintainerTest, ReplacementConfigurationIsCopiedFromItsOwnRecord) {
    Maintainer maintainer(namedRecord("base", "virtual"));
    maintainer.m_config.reset(new QelEnvConfig(namedRecord("replaced", "ignored"), EnvConfigType::base));
    maintainer.vconfigDirty = true;
    bytesBy(maintainer);
    const Maintainer again(maintainer.m_core);
    EXPECT_EQ(valueBy(*again.m_config, &QelEnvConfig::getName), "replaced");
    EXPECT_EQ(valueBy(*again.m_vconfig, &QelEnvConfig::getName), "virtual");
}

/// The type of a record after configurations with their own types were serialised into it.
std::string typeBy(const char* base, bool isBaseDirty, const char* virtualised, bool isVirtualDirty) {
    Maintainer maintainer;
    maintainer.m_core->type = "old";
    maintainer.m_config = named<QelEnvConfig>("base", base);
    maintainer.m_vconfig = named<QelVEnvConfig>("virtual", virtualised);
    maintainer.configDirty = isBaseDirty;
    maintainer.vconfigDirty = isVirtualDirty;
    bytesBy(maintainer);
    return maintainer.m_core->type.c_str();
}

TEST(QelEnvCoreBasicMaintainerTest, TypeOfVirtualConfigurationTakesPrecedence) {
    EXPECT_EQ(typeBy("b", true, "v", true), "v");
    EXPECT_EQ(typeBy(nullptr, true, "v", true), "v");
}

TEST(QelEnvCoreBasicMaintainerTest, TypeOfBaseConfigurationIsUsedIfVirtualOneHasNone) {
    EXPECT_EQ(typeBy("b", true, nullptr, true), "b");
    EXPECT_EQ(typeBy("b", true, nullptr, false), "b");
    EXPECT_EQ(typeBy("b", true, "v", false), "old");
}

TEST(QelEnvCoreBasicMaintainerTest, TypeOfCleanConfigurationIsIgnored) {
    EXPECT_EQ(typeBy("b", false, nullptr, true), "old");
    EXPECT_EQ(typeBy(nullptr, true, nullptr, true), "old");
}

TEST(QelEnvCoreBasicMaintainerTest, UnserialisableConfigurationChangesNothing) {
    const auto record = namedRecord("base", "virtual");
    Maintainer maintainer(record);
    maintainer.m_config.reset(new QelEnvConfig(&TooDeepMessage().cursor(), EnvConfigType::base));
    maintainer.configDirty = maintainer.vconfigDirty = true;
    unsigned length = 0;
    EXPECT_EQ(maintainer.getBuffer(nullptr, length, nullptr), -1);
    EXPECT_TRUE(maintainer.configDirty);
    EXPECT_TRUE(maintainer.vconfigDirty);
    EXPECT_EQ(maintainer.m_core, record);
}

} // namespace
} // namespace Qel
