#include "QelFunctionalityCore/Host/QelEnvSample.h"

#include <typeinfo>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "support/LogCapture.h"
#include "support/RequiredChildren.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(QelEnvSampleTest, ConfigurationIsOptional) {
    QelEnvSample sample;
    sample.id = QelGUID(1, 2);
    const TestMessage without;
    EXPECT_EQ(without.cursor().putObj(sample, 0), 0);
    EXPECT_THAT(childIDs(without.cursor()), ElementsAre(1010));
    QelEnvSample read;
    EXPECT_EQ(without.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.config, nullptr);

    sample.config = boost::make_shared<QelVEnvConfig>();
    sample.config->setName(specified("sample"));
    sample.config->setDisabled(true);
    const TestMessage with;
    EXPECT_EQ(with.cursor().putObj(sample, 0), 0);
    EXPECT_EQ(with.cursor().getObj(read, 0), 0);
    ASSERT_NE(read.config, nullptr);
    EXPECT_EQ(read.config->getConfigType(), EnvConfigType::virtualised);
    EXPECT_EQ(valueBy(*read.config, &QelEnvConfig::getName), "sample");
    bool isDisabled = false;
    EXPECT_EQ(read.config->getDisabled(isDisabled), 0);
    EXPECT_TRUE(isDisabled);
}

TEST(QelEnvSampleTest, IgnoresMalformedIdentifier) {
    const TestMessage message;
    message.cursor().putValue("no identifier", 1010);
    message.cursor().putChild(1872);
    QelEnvSample read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.id.isValid());
    EXPECT_NE(read.config, nullptr);
}

TEST(QelSampleConfTest, EmptyStringsAreOmittedAndOptional) {
    QelSampleConf conf;
    conf.config = boost::make_shared<QelEnvConfig>();
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(conf, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1873, 1010, 2102));
    conf.name = "sample";
    conf.f1034 = std::string("\0", 1);
    const TestMessage filled;
    EXPECT_EQ(filled.cursor().putObj(conf, 0), 0);
    EXPECT_THAT(childIDs(filled.cursor()), ElementsAre(1873, 1010, 1026, 1034, 2102));
    EXPECT_EQ(childValue(filled.cursor(), 1034), "AA==");
    conf.config.reset();
    EXPECT_EQ(filled.cursor().putObj(conf, 0), -1);
}

TEST(QelSampleConfTest, ConfigurationIsRequiredAndKeepsItsClass) {
    QelSampleConf conf;
    conf.id = QelGUID(1, 2);
    conf.config = boost::make_shared<QelVEnvConfig>();
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(conf, 0), 0);
    QelSampleConf read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_NE(dynamic_cast<QelVEnvConfig*>(read.config.get()), nullptr);
    expectRequired(conf, {1873, 1010, 2102});
}

TEST(QelSampleConfTest, UntypedConfigurationIsReadAsBaseClass) {
    const TestMessage message;
    message.cursor().newChild(1873);
    message.cursor().putValue("web", 1026);
    message.cursor().seekUp();
    EXPECT_EQ(message.cursor().putObj(QelGUID(1, 2), 1010), 0);
    message.cursor().putChild(2102);
    QelSampleConf read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    ASSERT_NE(read.config, nullptr);
    const QelEnvConfig& config = *read.config;
    EXPECT_EQ(typeid(config), typeid(QelEnvConfig));
    EXPECT_EQ(valueBy(config, &QelEnvConfig::getName), "web");
}

TEST(QelSampleConfTest, UnreadableBase64StringKeepsPreviousValue) {
    QelSampleConf conf;
    conf.config = boost::make_shared<QelEnvConfig>();
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(conf, 0), 0);
    message.cursor().putValue("?", 1034);
    QelSampleConf read;
    read.f1034 = "kept";
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.f1034, "kept");
}

TEST(QelFileListTypeTest, ReadAlwaysSucceeds) {
    const TestMessage message;
    QelFileListType read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    message.cursor().putChild(2289);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.f2289, ElementsAre(""));
}

TEST(QelVtVersionTest, WritesAllStringsAndRequiresNone) {
    const TestMessage message;
    QelVtVersion read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(message.cursor().putObj(read, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1846, 1276, 2103));
}

TEST(QelHNLookupInfoTypeTest, MissingHostNameIsRejectedAndLogged) {
    const TestMessage message;
    message.cursor().putValue("one", 1072);
    QelHNLookupInfoType read;
    const LogCapture log;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_THAT(log.messages(), ElementsAre("1 Required configuration parameters are not set"));
}

TEST(QelHNLookupInfoTypeTest, ListAndOperatingSystemAreOptional) {
    const TestMessage message;
    message.cursor().putValue("web", 1261);
    QelHNLookupInfoType read;
    const LogCapture log;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(log.messages(), IsEmpty());
    EXPECT_EQ(read.hostname, "web");
    read.f1072 = {"a", "b"};
    const TestMessage written;
    EXPECT_EQ(written.cursor().putObj(read, 0), 0);
    EXPECT_THAT(childIDs(written.cursor()), ElementsAre(1261, 1072, 1072, 1277));
}

} // namespace
} // namespace Qel
