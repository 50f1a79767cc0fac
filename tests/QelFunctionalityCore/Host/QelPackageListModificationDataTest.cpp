#include "QelFunctionalityCore/Host/QelPackageListModificationData.h"

#include <typeinfo>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "support/RequiredChildren.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int operationElement = 1007;
constexpr int packagesElement = 1915;

QelPackageListModificationData installed() {
    QelPackageListModificationData data;
    data.operation = 2;
    data.eid = someEID;
    data.packages.push_back(boost::make_shared<QelPackageDeb>());
    data.packages.push_back(boost::make_shared<QelPackage>());
    data.packages[0]->name = "bash";
    data.packages[1]->name = "dash";
    return data;
}

TEST(QelPackageListModificationDataTest, PackagesKeepTheirClasses) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(installed(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(operationElement, 1866, packagesElement));
    QelPackageListModificationData read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.operation, 2);
    EXPECT_EQ(read.eid, someEID);
    ASSERT_EQ(read.packages.size(), 2U);
    EXPECT_NE(dynamic_cast<QelPackageDeb*>(read.packages[0].get()), nullptr);
    EXPECT_EQ(read.packages[1]->name, "dash");
}

TEST(QelPackageListModificationDataTest, UntypedPackageIsReadAsBaseClass) {
    const TestMessage message;
    message.cursor().putValue(0, operationElement);
    EXPECT_EQ(message.cursor().putObj(someEID, 1866), 0);
    message.cursor().newChild(packagesElement);
    message.cursor().newChild(1295);
    message.cursor().putValue("bash", 1026);
    message.cursor().seekRoot();
    QelPackageListModificationData read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    ASSERT_EQ(read.packages.size(), 1U);
    const QelPackage& package = *read.packages[0];
    EXPECT_EQ(typeid(package), typeid(QelPackage));
    EXPECT_EQ(package.name, "bash");
}

TEST(QelPackageListModificationDataTest, WritesNothingWithoutPackagesAndReaderRejectsThat) {
    QelPackageListModificationData data = installed();
    data.packages.clear();
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(data, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    QelPackageListModificationData read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelPackageListModificationDataTest, RejectsUnknownOperation) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(installed(), 0), 0);
    for (const char* const operation : {"-1", "3", "install", ""}) {
        message.cursor().deleteChild(operationElement);
        message.cursor().putValue(std::string(operation), operationElement);
        QelPackageListModificationData read;
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << operation;
        EXPECT_EQ(read.operation, -1) << operation;
        EXPECT_FALSE(read.eid.isValid()) << "reading stops at the first failure";
    }
    for (const char* const operation : {"0", "1"}) {
        message.cursor().deleteChild(operationElement);
        message.cursor().putValue(std::string(operation), operationElement);
        QelPackageListModificationData read;
        EXPECT_EQ(message.cursor().getObj(read, 0), 0) << operation;
    }
}

TEST(QelPackageListModificationDataTest, RequiresEnvironmentAndPackages) {
    expectRequired(installed(), {1866, packagesElement});
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(installed(), 0), 0);
    message.cursor().deleteChild(packagesElement);
    message.cursor().putChild(packagesElement);
    QelPackageListModificationData read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelPackageListModificationDataTest, NullPackageStopsWriter) {
    QelPackageListModificationData data = installed();
    data.operation = 5;
    data.packages[0]->name.clear();
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(data, 0), 0) << "the writer does not check the operation";
    EXPECT_EQ(childValue(message.cursor(), operationElement), "5");
    data.packages[1].reset();
    EXPECT_EQ(message.cursor().putObj(data, 0), 1) << "failure code of list writers";
}

TEST(QelPackageListModificationDataTest, FailedWriteOfEnvironmentStopsBeforePackages) {
    EXPECT_EQ(writeWithoutValues(installed()), -1);
}

TEST(QelPackageListModificationDataTest, SubscriptionNameIsFixed) {
    EXPECT_EQ(QelPackageListModificationData::subscriptionName, "package_list_subscription");
}

} // namespace
} // namespace Qel
