#include <gmock/gmock.h>

#include "EnvTestSupport.h"

// The wire form of environments.

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int environment = 1624;
constexpr int parentEID = 1870;
constexpr int eid = 1866;
constexpr int status = 1192;
constexpr int alert = 1003;
constexpr int config = 1185;
constexpr int vconfig = 1872;
constexpr int name = 1026;

/// A cursor at the empty element of an environment.
class EnvElement : public TestMessage {
public:
    EnvElement() { cursor().newChild(environment); }
    /// Adds the two EIDs.
    static void identify(const EnvElement& element) {
        element->putObj(otherEID, parentEID);
        element->putObj(someEID, eid);
    }
    QelMessageIterator* operator->() const { return &cursor(); }

    /// Adds a configuration of a class, with a name and optionally a type.
    template <class Config> void putConfig(int id, const char* nameText, const char* typeText) const {
        const boost::shared_ptr<QelEnvConfig> made(new Config);
        made->setName(specified(nameText));
        if (typeText)
            made->setType(typeText);
        cursor().putObject(made, QelWriterDerived<QelEnvConfig>(), id);
    }
    [[nodiscard]] int read(QelEnv& env) const { return QelEnv::Reader()(cursor(), env); }
};

struct IdentifiedElement : EnvElement {
    IdentifiedElement() { identify(*this); }
};

TEST(QelEnvFunctorsTest, EnvironmentWithOnlyItsEidsIsGenericAndBlank) {
    const IdentifiedElement element;
    QelEnv env;
    ASSERT_EQ(element.read(env), 0);
    EXPECT_EQ(env.getEID(), someEID);
    EXPECT_EQ(env.getParentEID(), otherEID);
    EXPECT_EQ(env.getType(), "generic");
    EXPECT_EQ(env.getStatus(), QelEnvStatus(1, 0));
    EXPECT_EQ(env.getMaxAlertType(), QelAlertType::green);
    const QelEnv& read = env;
    EXPECT_EQ(valueBy(*read.getConfig(), &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(valueBy(*read.getVirtualConfig(), &QelEnvConfig::getName), "(fails)");
    env.syncBuffer();
    EXPECT_EQ(env.getCoreBasic()->length(), 92U);
}

TEST(QelEnvFunctorsTest, MissingEidFailsAfterConfigurationsAreRead) {
    for (const int present : {parentEID, eid}) {
        const EnvElement element;
        element->putObj(otherEID, present);
        element->putObj(QelEnvStatus(8, 9), status);
        element.putConfig<QelEnvConfig>(config, "base", nullptr);
        element.putConfig<QelVEnvConfig>(vconfig, "virtual", "vm");
        QelEnv env;
        EXPECT_EQ(element.read(env), -1) << present;
        const QelEnv& read = env;
        EXPECT_EQ(valueBy(*read.getConfig(), &QelEnvConfig::getName), "base") << present;
        EXPECT_EQ(valueBy(*read.getVirtualConfig(), &QelEnvConfig::getName), "virtual") << present;
        EXPECT_EQ(env.getType(), "vm") << present;
        EXPECT_EQ(env.getStatus(), QelEnvStatus(1, 0)) << "read after the EIDs, so not at all";
        // The EID of the parent is read first.
        EXPECT_EQ(env.getParentEID(), present == parentEID ? otherEID : QelEID());
        EXPECT_EQ(env.getEID(), QelEID());
        EXPECT_EQ(element->curID(), environment) << "the position is restored";
    }
}

TEST(QelEnvFunctorsTest, RejectsInvalidEid) {
    const EnvElement element;
    element->putObj(otherEID, parentEID);
    element->putValue(std::string("no identifier"), eid);
    QelEnv env;
    EXPECT_EQ(element.read(env), -1);
}

/// The type of an environment whose configurations have these types.
std::string typeBy(const char* base, const char* virtualised) {
    const IdentifiedElement element;
    element.putConfig<QelEnvConfig>(config, "base", base);
    element.putConfig<QelVEnvConfig>(vconfig, "virtual", virtualised);
    QelEnv env;
    EXPECT_EQ(element.read(env), 0);
    const std::string read = env.getType().c_str();
    env.syncBuffer();
    EXPECT_EQ(env.getType(), read) << "the record agrees";
    return read;
}

TEST(QelEnvFunctorsTest, TypeFallsBackFromVirtualToBaseConfigurationToGeneric) {
    EXPECT_EQ(typeBy("b", "v"), "v");
    EXPECT_EQ(typeBy("b", nullptr), "b");
    EXPECT_EQ(typeBy(nullptr, "v"), "v");
    EXPECT_EQ(typeBy(nullptr, nullptr), "generic");
    EXPECT_EQ(typeBy("b", ""), "") << "a specified empty type counts as a type";
}

TEST(QelEnvFunctorsTest, VirtualConfigurationOfOtherClassIsIgnored) {
    const IdentifiedElement element;
    element.putConfig<QelEnvConfig>(vconfig, "not virtual", "b");
    QelEnv env;
    ASSERT_EQ(element.read(env), 0);
    const QelEnv& read = env;
    EXPECT_EQ(valueBy(*read.getVirtualConfig(), &QelEnvConfig::getName), "(fails)");
    EXPECT_EQ(env.getType(), "generic");
}

TEST(QelEnvFunctorsTest, ConfigurationsReadAreNotInRecordYet) {
    const IdentifiedElement element;
    element.putConfig<QelEnvConfig>(config, "base", nullptr);
    element.putConfig<QelVEnvConfig>(vconfig, "virtual", nullptr);
    QelEnv env;
    ASSERT_EQ(element.read(env), 0);
    EXPECT_EQ(env.getCoreBasic()->length(), 92U);
    env.syncBuffer();
    const QelEnv view(env.getCoreBasic());
    EXPECT_EQ(view.getEID(), someEID);
    EXPECT_EQ(valueBy(*view.getConfig(), &QelEnvConfig::getName), "base");
    EXPECT_EQ(valueBy(*view.getVirtualConfig(), &QelEnvConfig::getName), "virtual");
}

TEST(QelEnvFunctorsTest, RecordContainsTreesRatherThanOriginalElements) {
    const IdentifiedElement element;
    for (const int id : {config, vconfig}) {
        element->newChild(id);
        element->setComplexType(292, id == config ? 120 : 121);
        element->putValue(std::string("a name"), name);
        element->seekUp();
    }
    QelEnv env;
    ASSERT_EQ(element.read(env), 0);
    env.syncBuffer();
    const TestMessage base(env.getCoreBasic()->getConfig());
    ASSERT_EQ(base.cursor().firstChild(config), 0);
    EXPECT_THAT(childIDs(base.cursor()), ElementsAre(name, 1223)) << "with the version added to each tree";
    const TestMessage virtualised(env.getCoreBasic()->getVirtualConfig());
    EXPECT_EQ(virtualised.cursor().firstChild(config), 0) << "every tree has the same root";
}

std::vector<int> alertsBy(const std::vector<std::string>& texts) {
    const IdentifiedElement element;
    for (const std::string& text : texts)
        element->putValue(text, alert);
    QelEnv env;
    for (int i = 0; i < qelAlertReasonCount; ++i)
        env.setAlertType(static_cast<QelAlertReason>(i), QelAlertType::red);
    EXPECT_EQ(element.read(env), 0);
    EXPECT_EQ(element->curID(), environment) << "the position is restored";
    // The sizes of the configurations follow the alert levels in the record.
    EXPECT_EQ(env.getCoreBasic()->length(), 92U);
    std::vector<int> levels;
    for (int i = 0; i < qelAlertReasonCount; ++i)
        levels.push_back(static_cast<int>(env.getAlertType(static_cast<QelAlertReason>(i))));
    return levels;
}

TEST(QelEnvFunctorsTest, NthAlertLevelIsForNthReason) {
    EXPECT_THAT(alertsBy({"0", "1", "2", "3", "0"}), ElementsAre(0, 1, 2, 3, 0));
}

TEST(QelEnvFunctorsTest, MissingOrInvalidAlertLevelLeavesSlotUnchanged) {
    EXPECT_THAT(alertsBy({}), ElementsAre(2, 2, 2, 2, 2));
    EXPECT_THAT(alertsBy({"0", "0", "0", "0"}), ElementsAre(0, 0, 0, 0, 2));
    EXPECT_THAT(alertsBy({"0", "4", "x", "-1", "3"}), ElementsAre(0, 2, 2, 2, 3));
    EXPECT_THAT(alertsBy({"0", "0", "0", "0", "0", "1"}), ElementsAre(0, 0, 0, 0, 0)) << "there are no more reasons";
}

TEST(QelEnvFunctorsTest, StatusIsOptional) {
    const IdentifiedElement element;
    element->putObj(QelEnvStatus(8, 9), status);
    QelEnv env;
    ASSERT_EQ(element.read(env), 0);
    EXPECT_EQ(env.getStatus(), QelEnvStatus(8, 9));
}

TEST(QelEnvFunctorsTest, WritesEidsStatusAlertLevelsAndConfigurations) {
    const boost::shared_ptr<QelEnvConfig> base(new QelEnvConfig);
    base->setName(specified("base"));
    QelEnv env(someEID, base);
    env.setParentEID(otherEID);
    env.setStatus({5, 6});
    env.setAlertType(static_cast<QelAlertReason>(1), QelAlertType::yellow);
    const TestMessage message;
    ASSERT_EQ(message.cursor().putObj(env, environment), 0);
    const QelMessageIterator& cursor = message.cursor();
    cursor.firstChild();
    expectStampOf<QelEnv::Writer>(cursor);
    EXPECT_EQ(QelEnv::Writer::getNSID(), 292);
    EXPECT_EQ(QelEnv::Writer::getTypeID(), 122);
    EXPECT_THAT(childIDs(cursor),
                ElementsAre(parentEID, eid, status, alert, alert, alert, alert, alert, config, vconfig));
    EXPECT_EQ(childValue(cursor, parentEID), otherEID.toString());
    EXPECT_EQ(childValue(cursor, eid), someEID.toString());

    std::vector<std::string> levels;
    for (int more = cursor.firstChild(alert); more == 0; more = cursor.nextSibling(alert)) {
        levels.emplace_back();
        EXPECT_EQ(cursor.getValue(levels.back(), 0), 0);
    }
    EXPECT_THAT(levels, ElementsAre("0", "1", "0", "0", "0"));
    cursor.seekUp();
}

TEST(QelEnvFunctorsTest, StatusClearsTheNamespaceForAlertLevels) {
    const TestMessage message;
    ASSERT_EQ(message.cursor().putObj(QelEnv(), environment), 0);
    const QelMessageIterator& cursor = message.cursor();
    cursor.firstChild();
    std::vector<int> namespaces;
    for (int more = cursor.firstChild(); more == 0; more = cursor.nextSibling())
        namespaces.push_back(cursor.curNamespaceID());
    // The stamped status clears the namespace for the alert levels after it.
    EXPECT_THAT(namespaces, ElementsAre(292, 292, 292, 0, 0, 0, 0, 0, 292, 292));
}

TEST(QelEnvFunctorsTest, EmptyConfigurationIsEmptyStampedElement) {
    const TestMessage message;
    ASSERT_EQ(message.cursor().putObj(QelEnv(), environment), 0);
    const QelMessageIterator& cursor = message.cursor();
    cursor.firstChild();
    ASSERT_EQ(cursor.firstChild(config), 0);
    EXPECT_EQ(cursor.firstChild(), -1);
    expectStampOf<QelEnvConfig::Writer>(cursor);
    ASSERT_EQ(cursor.nextSibling(vconfig), 0);
    EXPECT_EQ(cursor.firstChild(), -1);
    expectStampOf<QelVEnvConfig::Writer>(cursor);
}

TEST(QelEnvFunctorsTest, IsDefaultOfItsRegistry) {
    const IdentifiedElement element;
    boost::shared_ptr<QelEnv> env;
    EXPECT_EQ(element->getObject(env, QelReaderDerived<QelEnv>(false), 0), -1);
    EXPECT_EQ(element->getObject(env, QelReaderDerived<QelEnv>(true), 0), 0);
    ASSERT_NE(env, nullptr);
    EXPECT_EQ(env->getEID(), someEID);
}

TEST(QelEnvFunctorsTest, SurvivesRoundTrip) {
    const IdentifiedElement element;
    element->putObj(QelEnvStatus(8, 9), status);
    element->putValue(3, alert);
    element.putConfig<QelEnvConfig>(config, "base", nullptr);
    element.putConfig<QelVEnvConfig>(vconfig, "virtual", "vm");
    QelEnv env;
    ASSERT_EQ(element.read(env), 0);
    const TestMessage first;
    ASSERT_EQ(first.cursor().putObj(env, environment), 0);
    QelEnv again;
    ASSERT_EQ(first.cursor().getObj(again, environment), 0);
    const TestMessage second;
    ASSERT_EQ(second.cursor().putObj(again, environment), 0);
    EXPECT_EQ(textOf(*first.get()), textOf(*second.get()));
    EXPECT_EQ(again.getTitle(), "virtual");
    EXPECT_EQ(again.getMaxAlertType(), QelAlertType::black);
}

TEST(QelEnvSPReaderTest, UnknownTypeCreatesPlainEnvironment) {
    const IdentifiedElement element;
    element.putConfig<QelVEnvConfig>(vconfig, "virtual", "unknown");
    boost::shared_ptr<QelEnv> env;
    ASSERT_EQ(QelEnv::EnvSPReader()(element.cursor(), env), 0);
    EXPECT_EQ(typeOf(*env), typeid(QelEnv));
    EXPECT_EQ(env->getType(), "unknown");
    EXPECT_EQ(element->curID(), environment);
}

TEST(QelEnvSPReaderTest, FailureLeavesOutputUnchanged) {
    boost::shared_ptr<QelEnv> env(new QelEnv);
    const auto before = env;
    EXPECT_EQ(QelEnv::EnvSPReader()(EnvElement().cursor(), env), -1);
    EXPECT_EQ(env, before);
}

TEST(QelEnvSPReaderTest, KnownTypeCreatesClassOfItsFactory) {
    const RegisteredFactory factory("known");
    factory->fresh = [] { return boost::shared_ptr<QelEnvBase>(new TestEnv); };
    const IdentifiedElement element;
    element.putConfig<QelEnvConfig>(config, "base", "known");
    boost::shared_ptr<QelEnv> env;
    ASSERT_EQ(QelEnv::EnvSPReader()(element.cursor(), env), 0);
    EXPECT_EQ(factory->made, 1);
    EXPECT_EQ(typeOf(*env), typeid(TestEnv));
    EXPECT_EQ(env->getSortKey(), 7U);
    EXPECT_EQ(env->getEID(), someEID);
    EXPECT_EQ(env->getType(), "known");
    EXPECT_EQ(env->getTitle(), "base");
    EXPECT_EQ(element->curID(), environment);
}

TEST(QelEnvSPReaderTest, FactoryOfOtherClassesFallsBackToPlainEnvironment) {
    const RegisteredFactory factory("wrong");
    factory->fresh = [] { return boost::shared_ptr<QelEnvBase>(new ForeignEnv); };
    const IdentifiedElement element;
    element.putConfig<QelEnvConfig>(config, "base", "wrong");
    boost::shared_ptr<QelEnv> env;
    ASSERT_EQ(QelEnv::EnvSPReader()(element.cursor(), env), 0);
    EXPECT_EQ(factory->made, 1);
    EXPECT_EQ(typeOf(*env), typeid(QelEnv));
    EXPECT_EQ(env->getTitle(), "base");
}

} // namespace
} // namespace Qel
