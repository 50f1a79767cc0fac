#include "QelFunctionalityCore/Host/QelSnapshot.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "support/ForeignCursor.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int configElement = 1873;

QelSnapshot sample() {
    QelSnapshot snapshot;
    snapshot.id = QelGUID(1, 2);
    snapshot.name = "before";
    snapshot.text1026 = "text";
    return snapshot;
}

TEST(QelSnapshotTest, DescriptionAndConfigurationAreOptional) {
    QelSnapshot snapshot = sample();
    const TestMessage bare;
    EXPECT_EQ(bare.cursor().putObj(snapshot, 0), 0);
    EXPECT_THAT(childIDs(bare.cursor()), ElementsAre(1010, 1007, 1026));
    snapshot.description = std::string("\0", 1);
    snapshot.config = boost::make_shared<QelEnvConfig>();
    snapshot.config->setName(specified("web"));
    const TestMessage filled;
    EXPECT_EQ(filled.cursor().putObj(snapshot, 0), 0);
    EXPECT_THAT(childIDs(filled.cursor()), ElementsAre(1010, 1007, 1026, 1496, configElement));
    QelSnapshot read;
    EXPECT_EQ(filled.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.description, snapshot.description);
    ASSERT_NE(read.config, nullptr);
    EXPECT_EQ(valueBy(*read.config, &QelEnvConfig::getName), "web");
}

TEST(QelSnapshotTest, FailedFieldDoesNotStopReader) {
    for (const int element : {1010, 1007, 1026}) {
        QelSnapshot snapshot = sample();
        snapshot.description = "d";
        snapshot.config = boost::make_shared<QelEnvConfig>();
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(snapshot, 0), 0);
        message.cursor().deleteChild(element);
        QelSnapshot read;
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << element;
        EXPECT_EQ(read.id.isValid(), element != 1010);
        EXPECT_EQ(read.name, element == 1007 ? "" : "before");
        EXPECT_EQ(read.text1026, element == 1026 ? "" : "text");
        EXPECT_EQ(read.description, "d");
        EXPECT_NE(read.config, nullptr);
    }
}

TEST(QelSnapshotTest, MissingConfigurationResetsPointer) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(sample(), 0), 0);
    QelSnapshot read;
    read.config = boost::make_shared<QelEnvConfig>();
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.config, nullptr);
}

TEST(QelSnapshotTest, UnreadableConfigurationResetsPointer) {
    QelSnapshot snapshot = sample();
    snapshot.config = boost::make_shared<QelEnvConfig>();
    snapshot.config->setName(specified("web"));
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(snapshot, 0), 0);
    const ForeignCursor foreign(message.cursor()); // a configuration is read by copying its elements
    for (const auto& former : {boost::shared_ptr<QelEnvConfig>(), boost::make_shared<QelEnvConfig>()}) {
        QelSnapshot read;
        read.config = former;
        EXPECT_EQ(foreign.getObj(read, 0), 0);
        EXPECT_EQ(read.config, nullptr);
        EXPECT_EQ(read.name, "before");
    }
}

TEST(QelSnapshotTest, ReadReusesConfigurationObject) {
    QelSnapshot snapshot = sample();
    snapshot.config = boost::make_shared<QelEnvConfig>();
    snapshot.config->setName(specified("web"));
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(snapshot, 0), 0);
    const auto shared = boost::make_shared<QelEnvConfig>();
    QelSnapshot read;
    read.config = shared;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.config, shared);
    EXPECT_EQ(valueBy(*shared, &QelEnvConfig::getName), "web");
}

TEST(QelSnapshotTest, IgnoresMalformedDescription) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(sample(), 0), 0);
    message.cursor().putValue("%%%", 1496);
    QelSnapshot read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
}

} // namespace
} // namespace Qel
