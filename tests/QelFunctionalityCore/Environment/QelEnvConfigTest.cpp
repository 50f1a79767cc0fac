#include "QelFunctionalityCore/Environment/QelEnvConfig.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"
#include "QelCommon/Log.h"
#include "QelFunctionalityCore/Environment/QelEnvCoreBasicMaintainer.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int name = 1026;
constexpr int description = 1496;
constexpr int type = 1007;
constexpr int agentVersion = 1223;
constexpr int baseSample = 1895;
constexpr int customized = 1766;

/// A cursor at an element to read as a configuration.
class Element : public TestMessage {
public:
    Element() { cursor().newChild(1185); }
    QelMessageIterator* operator->() const { return &cursor(); }
    [[nodiscard]] QelEnvConfig config(EnvConfigType configType = EnvConfigType::base) const {
        return {&cursor(), configType};
    }
};

struct TextField {
    const char* what;
    int element;
    int (QelEnvConfig::*get)(QelStringOptionalProperty&) const;
    int (QelEnvConfig::*set)(const QelStringOptionalProperty&);
};

constexpr TextField textFields[] = {
    {"name", 1026, &QelEnvConfig::getName, &QelEnvConfig::setName},
    {"domain", 1374, &QelEnvConfig::getDomain, &QelEnvConfig::setDomain},
    {"host name", 1261, &QelEnvConfig::getHostname, &QelEnvConfig::setHostname},
    {"architecture", 1276, &QelEnvConfig::getArchitecture, &QelEnvConfig::setArchitecture},
    {"description", 1496, &QelEnvConfig::getDescription, &QelEnvConfig::setDescription},
};

TEST(QelEnvConfigTest, WithoutTreeGettersFailAndLeaveOutputUnchanged) {
    const QelEnvConfig config(static_cast<const QelMessageIterator*>(nullptr), EnvConfigType::base);
    for (const TextField& field : textFields) {
        QelStringOptionalProperty text;
        text.get() = "left";
        EXPECT_EQ((config.*field.get)(text), -1) << field.what;
        EXPECT_FALSE(text.isSpecified()) << field.what;
        EXPECT_EQ(text.get(), "left") << field.what;
        text.specify(true);
        EXPECT_EQ((config.*field.get)(text), -1) << field.what;
        EXPECT_TRUE(text.isSpecified()) << field.what;
    }
    QelOS os;
    EXPECT_EQ(config.getOS(os), -1);
    QelOptionalProperty<QelGUID> sample;
    EXPECT_EQ(config.getBaseSampleId(sample), -1);
    QelGUID snapshot(1, 2);
    EXPECT_EQ(config.getBaseSnapshotId(snapshot), -1);
    EXPECT_EQ(snapshot, QelGUID(1, 2));
    bool flag = true;
    EXPECT_EQ(config.getConfigCustomized(flag), -1);
    EXPECT_EQ(config.getAgentVersion(), -1);
    EXPECT_FALSE(config.getType().isSpecified());
}

TEST(QelEnvConfigTest, EachStringHasItsElement) {
    for (const TextField& field : textFields) {
        QelEnvConfig config;
        EXPECT_EQ((config.*field.set)(specified("value")), 0) << field.what;
        EXPECT_EQ(valueBy(config, field.get), "value") << field.what;
        EXPECT_EQ((config.*field.set)(specified("")), 0) << field.what;
        EXPECT_EQ(valueBy(config, field.get), "") << field.what;
        const TestMessage message;
        EXPECT_EQ(QelEnvConfig::Writer()(message.cursor(), config), 0);
        EXPECT_EQ(countChildren(message.cursor(), field.element), 1) << field.what;
        EXPECT_EQ((config.*field.set)(QelStringOptionalProperty()), 0) << field.what;
        EXPECT_EQ(valueBy(config, field.get), "(unspecified)") << field.what;
        EXPECT_THAT(writtenIDs(config), ElementsAre(agentVersion)) << field.what;
    }
}

TEST(QelEnvConfigTest, SettingUnspecifiedStringCreatesTreeWithVersionOnly) {
    QelEnvConfig config;
    EXPECT_EQ(config.setName(QelStringOptionalProperty()), 0);
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "(unspecified)");
    const TestMessage message;
    EXPECT_EQ(QelEnvConfig::Writer()(message.cursor(), config), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(agentVersion));
    EXPECT_EQ(childValue(message.cursor(), agentVersion), "40500");
}

TEST(QelEnvConfigTest, MissingStringIsUnspecifiedAndKeepsItsValue) {
    const Element element;
    auto text = specified("left");
    EXPECT_EQ(element.config().getName(text), 0);
    EXPECT_FALSE(text.isSpecified());
    EXPECT_EQ(text.get(), "left");
}

TEST(QelEnvConfigTest, ElementWithoutValueIsSpecifiedEmptyString) {
    const Element element;
    element->putChild(name);
    EXPECT_EQ(valueBy(element.config(), &QelEnvConfig::getName), "");
}

TEST(QelEnvConfigTest, DescriptionIsBase64) {
    QelEnvConfig config;
    config.setDescription(specified(std::string("\0\n\xFF", 3)));
    const TestMessage message;
    QelEnvConfig::Writer()(message.cursor(), config);
    EXPECT_EQ(childValue(message.cursor(), description), "AAr/");
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getDescription), std::string("\0\n\xFF", 3));
}

TEST(QelEnvConfigTest, InvalidBase64DescriptionIsSpecifiedButNotRead) {
    const Element element;
    element->putValue(std::string("?"), description);
    QelStringOptionalProperty text;
    text.get() = "left";
    EXPECT_EQ(element.config().getDescription(text), 0);
    EXPECT_EQ(text, specified("left"));
}

TEST(QelEnvConfigTest, SettingHostNameIsTraced) {
    const int levelBefore = debug_level;
    std::vector<LogRecord> records;
    const LogSink sinkBefore = setLogSink([&](const LogRecord& record) { records.push_back(record); });
    QelEnvConfig config;
    debug_level = 4;
    config.setHostname(specified("web1"));
    debug_level = 3;
    config.setHostname(specified("web2"));
    debug_level = levelBefore;
    setLogSink(sinkBefore);

    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].level, 4);
    EXPECT_EQ(records[0].text, "Calling [int Qel::QelEnvConfig::setHostname(const Qel::QelStringOptionalProperty&)]");
    EXPECT_STREQ(records[0].module, "QelFunctionalityCore");
    EXPECT_STREQ(records[0].file, "core/src/QelFunctionalityCore/QelEnvConfig");
}

TEST(QelEnvConfigTest, TypeIsInTreeAndInRecord) {
    const auto core = recordOf("", "");
    QelEnvConfig config(core, EnvConfigType::base);
    EXPECT_EQ(config.setType("vm"), 0);
    EXPECT_EQ(core->type, "vm");
    EXPECT_EQ(config.getType(), "vm");
    EXPECT_THAT(writtenIDs(config), ElementsAre(type, agentVersion));

    EXPECT_EQ(config.setType("a type of 15 ch"), 0);
    const TestMessage message;
    QelEnvConfig::Writer()(message.cursor(), config);
    EXPECT_EQ(childValue(message.cursor(), type), "a type of 15 ch");
    EXPECT_EQ(countChildren(message.cursor(), type), 1);

    EXPECT_EQ(config.setType(""), 0);
    EXPECT_TRUE(config.getType().isSpecified());
    EXPECT_THAT(writtenIDs(config), ElementsAre(type, agentVersion));

    EXPECT_EQ(config.setType(QelEnvType()), 0);
    EXPECT_FALSE(core->type.isSpecified());
    EXPECT_THAT(writtenIDs(config), ElementsAre(agentVersion));
}

TEST(QelEnvConfigTest, OperatingSystemIsReplaced) {
    QelEnvConfig config;
    EXPECT_EQ(config.setOS(QelOS("linux", "debian", nullptr, nullptr)), 0);
    EXPECT_EQ(config.setOS(QelOS("linux", "fedora", nullptr, nullptr)), 0);
    QelOS os;
    EXPECT_EQ(config.getOS(os), 0);
    EXPECT_EQ(os.osName, specified("fedora"));
    EXPECT_THAT(writtenIDs(config), ElementsAre(1277, agentVersion));
}

TEST(QelEnvConfigTest, MissingOrUnnamedOperatingSystemFails) {
    const Element element;
    QelOS os;
    EXPECT_EQ(element.config().getOS(os), -1);
    element->putChild(1277);
    EXPECT_EQ(element.config().getOS(os), -1);
}

TEST(QelEnvConfigTest, BaseSampleIsOptional) {
    QelEnvConfig config;
    EXPECT_EQ(config.setBaseSampleId(specified(QelGUID(1, 2))), 0);
    EXPECT_EQ(config.setBaseSampleId(specified(QelGUID(3, 4))), 0);
    QelOptionalProperty<QelGUID> sample;
    EXPECT_EQ(config.getBaseSampleId(sample), 0);
    EXPECT_EQ(sample, specified(QelGUID(3, 4)));
    EXPECT_THAT(writtenIDs(config), ElementsAre(baseSample, agentVersion));

    EXPECT_EQ(config.setBaseSampleId(QelOptionalProperty<QelGUID>()), 0);
    EXPECT_EQ(config.getBaseSampleId(sample), 0);
    EXPECT_FALSE(sample.isSpecified());
}

TEST(QelEnvConfigTest, InvalidBaseSampleIsSpecifiedButNotRead) {
    const Element element;
    element->putValue(std::string("none"), baseSample);
    QelOptionalProperty<QelGUID> sample;
    EXPECT_EQ(element.config().getBaseSampleId(sample), 0);
    EXPECT_EQ(sample, specified(QelGUID()));
}

TEST(QelEnvConfigTest, BaseSnapshotIsAlwaysWritten) {
    QelEnvConfig config;
    EXPECT_EQ(config.setBaseSnapshotId(QelGUID()), 0);
    QelGUID snapshot(1, 2);
    EXPECT_EQ(config.getBaseSnapshotId(snapshot), 0);
    EXPECT_EQ(snapshot, QelGUID());
    EXPECT_EQ(config.setBaseSnapshotId(QelGUID(3, 4)), 0);
    EXPECT_THAT(writtenIDs(config), ElementsAre(1896, agentVersion));
    EXPECT_EQ(Element().config().getBaseSnapshotId(snapshot), -1);
}

TEST(QelEnvConfigTest, ReadsCustomizedFlag) {
    const Element element;
    bool flag = true;
    EXPECT_EQ(element.config().getConfigCustomized(flag), -1);
    element->putValue(0, customized);
    EXPECT_EQ(element.config().getConfigCustomized(flag), 0);
    EXPECT_FALSE(flag);
}

TEST(QelEnvConfigTest, TreeWithoutVersionIsFromOldAgent) {
    const Element element;
    EXPECT_EQ(element.config().getAgentVersion(), 40000);
    EXPECT_THAT(writtenIDs(element.config()), ElementsAre(agentVersion));
    element->putValue(std::string("new"), agentVersion);
    EXPECT_EQ(element.config().getAgentVersion(), 40000);
    EXPECT_THAT(writtenIDs(element.config()), ElementsAre(agentVersion));
    element->deleteChild(agentVersion);
    element->putValue(41000, agentVersion);
    EXPECT_EQ(element.config().getAgentVersion(), 41000);
}

TEST(QelEnvConfigTest, VirtualConfigurationHasNoVersion) {
    const Element element;
    element->putValue(41000, agentVersion);
    EXPECT_EQ(element.config(EnvConfigType::virtualised).getAgentVersion(), -1);
    EXPECT_THAT(writtenIDs(Element().config(EnvConfigType::virtualised)), IsEmpty());
}

TEST(QelEnvConfigTest, IsViewOfItsHalfOfRecord) {
    const Element element;
    element->putValue(std::string("base"), name);
    const Element other;
    other->putValue(std::string("virtual"), name);
    const auto record = recordOf(flattened(element.cursor()), flattened(other.cursor()));
    const QelEnvConfig base(record, EnvConfigType::base);
    const QelEnvConfig virtualised(record, EnvConfigType::virtualised);
    EXPECT_EQ(valueBy(base, &QelEnvConfig::getName), "base");
    EXPECT_EQ(base.getAgentVersion(), 40000);
    EXPECT_EQ(valueBy(virtualised, &QelEnvConfig::getName), "virtual");
    EXPECT_EQ(base.getConfigType(), EnvConfigType::base);
    EXPECT_EQ(virtualised.getConfigType(), EnvConfigType::virtualised);
}

TEST(QelEnvConfigTest, ConfigurationReadAtRootSurvivesRoundTripThroughRecord) {
    const TestMessage message;
    message->setSession("secret");
    message.cursor().putValue(std::string("first"), name);
    message.cursor().putValue(std::string("vm"), type);
    for (const EnvConfigType half : {EnvConfigType::base, EnvConfigType::virtualised}) {
        const QelEnvConfig config(&message.cursor(), half);
        EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "first");
        // The record of the configuration.
        const auto record = QelEnvCoreBasic::createInstance(&message.cursor(), half);
        EXPECT_EQ(record->type, "vm");
        const QelEnvConfig back(record, half);
        EXPECT_EQ(valueBy(back, &QelEnvConfig::getName), "first");
        EXPECT_EQ(writtenIDs(back), writtenIDs(config));
        EXPECT_EQ((configBytesOf(*record) + virtualConfigBytesOf(*record)).find("secret"), std::string::npos)
            << "the envelope is not part of a configuration";

        const auto replaced = QelEnvCoreBasic::createInstance(&message.cursor(), *record, half);
        EXPECT_EQ(valueBy(QelEnvConfig(replaced, half), &QelEnvConfig::getName), "first");
    }
    EXPECT_EQ(message.cursor().curName(), "/");
}

TEST(QelEnvConfigTest, RootOfNewTreeIsInNamespace292) {
    const boost::shared_ptr<QelEnvConfig> config(new QelEnvConfig);
    config->setName(specified("a"));
    const QelEnvCoreBasicMaintainer maintainer(someEID, config);
    const TestMessage tree(maintainer.m_core->getConfig());
    ASSERT_EQ(tree.cursor().firstChild(1185), 0);
    EXPECT_EQ(tree.cursor().curNamespaceID(), 292);
    ASSERT_EQ(tree.cursor().firstChild(name), 0);
    EXPECT_EQ(tree.cursor().curNamespaceID(), 292);
}

TEST(QelEnvConfigTest, NullRecordIsReplacedByBlankOne) {
    QelEnvConfig config(boost::shared_ptr<QelEnvCoreBasic>(), EnvConfigType::base);
    EXPECT_FALSE(config.getType().isSpecified());
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(config.setType("vm"), 0);
}

TEST(QelEnvConfigTest, IsParsedFromRecordOnFirstAccess) {
    const Element element;
    element->putValue(std::string("first"), name);
    std::string bytes = flattened(element.cursor());
    const auto record = recordOf(bytes, "");
    const QelEnvConfig early(record, EnvConfigType::base);
    EXPECT_EQ(valueBy(early, &QelEnvConfig::getName), "first");
    const QelEnvConfig late(record, EnvConfigType::base);
    const_cast<char*>(record->configBytes())[0] ^= 1;
    EXPECT_EQ(valueBy(early, &QelEnvConfig::getName), "first");
    EXPECT_EQ(valueBy(late, &QelEnvConfig::getName), "(fails)");
}

TEST(QelEnvConfigTest, DamagedConfigurationHasNoTree) {
    QelEnvConfig config(recordOf("damaged", ""), EnvConfigType::base);
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(config.getAgentVersion(), -1);
    EXPECT_EQ(config.setName(specified("new")), 0);
    EXPECT_EQ(config.getAgentVersion(), 40500);
}

TEST(QelEnvConfigTest, ResetDropsTreeAndOptionallyRecord) {
    const Element element;
    element->putValue(std::string("vm"), type);
    QelEnvConfig config = element.config();
    config.reset(false);
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(config.getType(), "vm");
    config.reset(true);
    EXPECT_FALSE(config.getType().isSpecified());
}

TEST(QelEnvConfigTest, CopyHasItsOwnTreeAndSharesRecord) {
    QelEnvConfig original;
    original.setName(specified("one"));
    original.setType("vm");
    QelEnvConfig copy(original);
    QelEnvConfig assigned(static_cast<const QelMessageIterator*>(nullptr), EnvConfigType::virtualised);
    assigned = original;
    EXPECT_EQ(assigned.getConfigType(), EnvConfigType::base);
    copy.setName(specified("two"));
    EXPECT_EQ(valueBy(original, &QelEnvConfig::getName), "one");
    EXPECT_EQ(valueBy(assigned, &QelEnvConfig::getName), "one");
    EXPECT_EQ(&copy.getType(), &original.getType());
    EXPECT_EQ(&assigned.getType(), &original.getType());

    const QelEnvConfig& same = copy;
    copy = same;
    EXPECT_EQ(valueBy(copy, &QelEnvConfig::getName), "two");
    copy = QelEnvConfig();
    EXPECT_EQ(valueBy(copy, &QelEnvConfig::getName), "(fails)");
}

TEST(QelEnvConfigTest, BaseCopyOfVirtualConfigurationStaysVirtual) {
    const Element element;
    element->putValue(std::string("one"), name);
    QelEnvConfig copy;
    copy = element.config(EnvConfigType::virtualised);
    EXPECT_THAT(writtenIDs(copy), ElementsAre(name));
}

TEST(QelEnvConfigTest, RepeatedEditingKeepsOneElementOfEach) {
    QelEnvConfig config;
    for (int i = 0; i < 1000; ++i)
        config.setName(specified(std::to_string(i)));
    EXPECT_THAT(writtenIDs(config), ElementsAre(name, agentVersion));
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "999");
}

} // namespace
} // namespace Qel
