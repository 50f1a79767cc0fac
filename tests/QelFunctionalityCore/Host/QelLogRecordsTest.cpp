#include "QelFunctionalityCore/Host/QelLogRecords.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

TEST(QelLogParametersTest, EachLogIsWrittenAsOneListItem) {
    QelLogParameters parameters;
    parameters.eid = someEID;
    parameters.logs = {{.name = "disk", .f1089 = 3}, {.name = "net", .f1089 = 4}};
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(parameters, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1866, 1089, 1094, 1094));
    ASSERT_EQ(message.cursor().seek(1094), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1089));
    message.cursor().deleteChild(1089);
    message.cursor().seekUp();
    QelLogParameters read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1) << "a log requires both fields";
}

TEST(QelLogParametersTest, UnreadableNumberKeepsPreviousValue) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(someEID, 1866), 0);
    message.cursor().putValue("many", 1089);
    QelLogParameters read;
    read.f1089 = 7;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.f1089, 7);
}

TEST(QelLogParametersTest, SubscriptionNameIsFixed) {
    EXPECT_EQ(QelLogParameters::subscriptionName, "log_subscription");
}

TEST(QelLogClassTest, OmitsEmptyOptionalStrings) {
    const TestMessage message;
    QelLogClass logClass;
    logClass.f1906 = "bytes";
    EXPECT_EQ(message.cursor().putObj(logClass, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1906));
}

} // namespace
} // namespace Qel
