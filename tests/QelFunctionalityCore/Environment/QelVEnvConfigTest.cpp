#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int disabled = 1705;
constexpr int qos = 1476;
constexpr int resource = 1010;

using Limits = std::set<QelQoS>;

QelQoS limit(const std::string& id, long long hardLimit) {
    QelQoS made(id);
    made.hardLimit = hardLimit;
    return made;
}

/// A cursor at an element to read as a virtual configuration.
class Element : public TestMessage {
public:
    Element() { cursor().newChild(1185); }
    QelMessageIterator* operator->() const { return &cursor(); }
    [[nodiscard]] QelVEnvConfig config() const { return QelVEnvConfig(&cursor()); }
};

std::vector<std::string> limitsBy(const QelVEnvConfig& config, int expected = 0) {
    QelQoSListOptionalProperty limits;
    EXPECT_EQ(config.getQoSes(limits), expected);
    if (!limits.isSpecified())
        return {"(unspecified)"};
    std::vector<std::string> texts;
    for (const QelQoS& each : limits.get())
        texts.push_back(each.id + '=' + each.toString());
    return texts;
}

TEST(QelVEnvConfigTest, AllConstructorsMakeVirtualConfiguration) {
    EXPECT_EQ(QelVEnvConfig().getConfigType(), EnvConfigType::virtualised);
    EXPECT_EQ(Element().config().getConfigType(), EnvConfigType::virtualised);
    EXPECT_EQ(QelVEnvConfig(recordOf("", "")).getConfigType(), EnvConfigType::virtualised);
    EXPECT_EQ(QelVEnvConfig(boost::shared_ptr<QelEnvCoreBasic>()).getConfigType(), EnvConfigType::virtualised);
}

TEST(QelVEnvConfigTest, CopiesBaseConfiguration) {
    QelEnvConfig base;
    base.setName(specified("base"));
    const QelVEnvConfig copy(base);
    EXPECT_EQ(copy.getConfigType(), EnvConfigType::base);
    EXPECT_EQ(valueBy(copy, &QelEnvConfig::getName), "base");
    EXPECT_EQ(copy.getAgentVersion(), 40500);
}

TEST(QelVEnvConfigTest, NewTreeHasNoVersion) {
    QelVEnvConfig config;
    EXPECT_EQ(config.setName(QelStringOptionalProperty()), 0);
    EXPECT_THAT(writtenIDs(config), IsEmpty());
    EXPECT_EQ(config.getAgentVersion(), -1);
}

TEST(QelVEnvConfigTest, WithoutTreeGettersFailAndLeaveOutputUnchanged) {
    const QelVEnvConfig config;
    bool flag = true;
    EXPECT_EQ(config.getDisabled(flag), -1);
    EXPECT_TRUE(flag);
    auto limits = specified(Limits{limit("ram", 1)});
    EXPECT_EQ(config.getQoSes(limits), -1);
    EXPECT_EQ(limits.get().size(), 1U);
    auto one = specified(limit("ram", 1));
    EXPECT_EQ(config.getQoS(one), -1);
    EXPECT_TRUE(one.isSpecified());
}

TEST(QelVEnvConfigTest, IsEnabledByDefault) {
    bool flag = true;
    const Element element;
    EXPECT_EQ(element.config().getDisabled(flag), 0);
    EXPECT_FALSE(flag);
    element->putValue(std::string("perhaps"), disabled);
    flag = true;
    EXPECT_EQ(element.config().getDisabled(flag), 0);
    EXPECT_FALSE(flag);
}

TEST(QelVEnvConfigTest, DisabledFlagIsNumber) {
    QelVEnvConfig config;
    for (const bool value : {true, false, true}) {
        EXPECT_EQ(config.setDisabled(value), 0);
        bool flag = !value;
        EXPECT_EQ(config.getDisabled(flag), 0);
        EXPECT_EQ(flag, value);
        const TestMessage message;
        QelEnvConfig::Writer()(message.cursor(), config);
        EXPECT_THAT(childIDs(message.cursor()), ElementsAre(disabled));
        EXPECT_EQ(childValue(message.cursor(), disabled), value ? "1" : "0");
    }
}

TEST(QelVEnvConfigTest, LimitsAreReplaced) {
    QelVEnvConfig config;
    EXPECT_EQ(config.setQoSes(specified(Limits{limit("ram", 1), limit("cpu", 2)})), 0);
    EXPECT_THAT(limitsBy(config), ElementsAre("cpu=2", "ram=1"));
    EXPECT_THAT(writtenIDs(config), ElementsAre(qos, qos));
    EXPECT_EQ(config.setQoSes(specified(Limits())), 0);
    EXPECT_THAT(limitsBy(config), IsEmpty());
    EXPECT_THAT(writtenIDs(config), ElementsAre(qos));
    EXPECT_EQ(config.setQoSes(QelQoSListOptionalProperty()), 0);
    EXPECT_THAT(limitsBy(config), ElementsAre("(unspecified)"));
    EXPECT_THAT(writtenIDs(config), IsEmpty());
}

TEST(QelVEnvConfigTest, UnreadableLimitFailsAndEndsList) {
    const Element element;
    element->putObj(limit("ram", 1), qos);
    element->newChild(qos);
    element->putValue(std::string("cpu"), resource);
    element->seekUp();
    element->newChild(qos);
    element->putObj(limit("disk", 1), 0);
    element->seekUp();
    EXPECT_THAT(limitsBy(element.config(), -1), ElementsAre("ram=1"));
    // The tree can still be read, so the position was restored.
    EXPECT_THAT(writtenIDs(element.config()), ElementsAre(qos, qos, qos));
}

TEST(QelVEnvConfigTest, ReadingTwiceGivesSameResultEvenAfterFailure) {
    const Element element;
    element->newChild(qos);
    element->putValue(std::string("cpu"), resource);
    element->seekUp();
    element->putValue(std::string("x"), 1026);
    const QelVEnvConfig config = element.config();
    limitsBy(config, -1);
    limitsBy(config, -1);
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "x");
}

TEST(QelVEnvConfigTest, FindsLimitByIdentifier) {
    QelVEnvConfig config;
    config.setQoSes(specified(Limits{limit("ram", 1), limit("cpu", 2)}));
    QelOptionalProperty<QelQoS> wanted;
    wanted.get().id = "cpu";
    EXPECT_EQ(config.getQoS(wanted), 0);
    EXPECT_TRUE(wanted.isSpecified());
    EXPECT_EQ(wanted.get().hardLimit, 2);

    auto unknown = specified(limit("disk", 5));
    EXPECT_EQ(config.getQoS(unknown), 0);
    EXPECT_FALSE(unknown.isSpecified());
    EXPECT_EQ(unknown.get().hardLimit, 5);
}

TEST(QelVEnvConfigTest, SingleLimitFailsIfListFails) {
    const Element element;
    element->newChild(qos);
    element->putValue(std::string("cpu"), resource);
    element->seekUp();
    auto wanted = specified(limit("cpu", 3));
    EXPECT_EQ(element.config().getQoS(wanted), -1);
    EXPECT_TRUE(wanted.isSpecified());
}

TEST(QelVEnvConfigTest, SettingLimitReplacesLimitWithSameIdentifier) {
    QelVEnvConfig config;
    QelOptionalProperty<QelQoS> ram;
    ram.get() = limit("ram", 1);
    EXPECT_EQ(config.setQoS(ram), 0) << "whether it is specified has no effect";
    EXPECT_EQ(config.setQoS(specified(limit("cpu", 2))), 0);
    EXPECT_EQ(config.setQoS(specified(limit("ram", 3))), 0);
    EXPECT_THAT(limitsBy(config), ElementsAre("cpu=2", "ram=3"));
}

} // namespace
} // namespace Qel
