#include "QelFunctionalityCore/Host/QelPackage.h"

#include <typeinfo>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int nameElement = 1026;
constexpr int osElement = 1277;
constexpr int pathElement = 1156;
constexpr int packageElement = 1295;

QelPackageRpm rpm(const std::string& name, const std::string& filePath) {
    QelPackageRpm made;
    made.name = name;
    made.filePath = filePath;
    return made;
}

TEST(QelPackageTest, NameAloneIsOneElement) {
    const TestMessage message;
    QelPackage package;
    package.name = "bash";
    EXPECT_EQ(message.cursor().putObj(package, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(nameElement));
    expectStampOf<QelPackage::Writer>(message.cursor());
}

TEST(QelPackageTest, RequiresName) {
    const TestMessage message;
    message.cursor().putValue("5.2", 1223);
    QelPackage read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelPackageTest, OmitsOperatingSystemWithoutDetailAndName) {
    const auto childrenWith = [](const QelOS& os) {
        const TestMessage message;
        QelPackage package;
        package.os = os;
        EXPECT_EQ(message.cursor().putObj(package, 0), 0);
        return childIDs(message.cursor());
    };
    EXPECT_THAT(childrenWith(QelOS("linux", nullptr, "12", nullptr)), ElementsAre(nameElement));
    EXPECT_THAT(childrenWith(QelOS(nullptr, "", nullptr, nullptr)), ElementsAre(nameElement, osElement));
    EXPECT_THAT(childrenWith(QelOS(nullptr, nullptr, nullptr, "6.1")), ElementsAre(nameElement, osElement));
}

TEST(QelPackageTest, RpmHasElementsOfLinuxPackageAndItsOwnType) {
    const TestMessage asLinux;
    const QelPackageRpm package = rpm("bash", "/tmp/bash.rpm");
    EXPECT_EQ(asLinux.cursor().putObj(static_cast<const QelPackageLinux&>(package), 0), 0);
    const TestMessage asRpm;
    EXPECT_EQ(asRpm.cursor().putObj(package, 0), 0);
    EXPECT_THAT(childIDs(asRpm.cursor()), ElementsAre(nameElement, pathElement));
    EXPECT_EQ(childIDs(asRpm.cursor()), childIDs(asLinux.cursor()));
    EXPECT_EQ(childValue(asRpm.cursor(), pathElement), "L3RtcC9iYXNoLnJwbQ==");
    EXPECT_EQ(QelPackageRpm::Writer::getTypeID(), 230);
    EXPECT_EQ(QelPackageDeb::Writer::getTypeID(), 273);
    expectStampOf<QelPackageRpm::Writer>(asRpm.cursor());
}

TEST(QelPackageTest, LinuxPackageRequiresName) {
    const TestMessage message;
    message.cursor().putValueBase64("/tmp/bash.rpm", pathElement);
    QelPackageLinux read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.filePath, "");
}

TEST(QelPackageTest, UnreadableFilePathKeepsPreviousValue) {
    const TestMessage message;
    message.cursor().putValue("bash", nameElement);
    message.cursor().putValue("?", pathElement);
    QelPackageLinux read;
    read.filePath = "/kept";
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.filePath, "/kept");
}

TEST(QelPackageTest, UnreadableOperatingSystemFailsRead) {
    const TestMessage message;
    message.cursor().putValue("bash", nameElement);
    message.cursor().putChild(osElement); // without a name
    QelPackage read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelPackageTest, PackagesKeepTheirClasses) {
    const TestMessage message;
    const boost::shared_ptr<QelPackage> package = boost::make_shared<QelPackageRpm>(rpm("bash", "/x"));
    EXPECT_EQ(message.cursor().putObject(package, QelWriterDerived<QelPackage>(), packageElement), 0);
    boost::shared_ptr<QelPackage> read;
    EXPECT_EQ(message.cursor().getObject(read, QelReaderDerived<QelPackage>(false), packageElement), 0);
    const auto* const readRpm = dynamic_cast<const QelPackageRpm*>(read.get());
    ASSERT_NE(readRpm, nullptr);
    EXPECT_EQ(readRpm->filePath, "/x");
}

TEST(QelInstallationPackageTest, EmptyRecordIsWrittenButRejectedByReader) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelInstallationPackage(), 1115), 0);
    ASSERT_EQ(message.cursor().seek(1115), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    QelInstallationPackage read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelInstallationPackageTest, UntypedPackageIsReadAsBaseClass) {
    const TestMessage message;
    message.cursor().newChild(packageElement);
    message.cursor().putValue("bash", nameElement);
    message.cursor().seekUp();
    QelInstallationPackage read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    ASSERT_NE(read.package, nullptr);
    const QelPackage& package = *read.package;
    EXPECT_EQ(typeid(package), typeid(QelPackage));
    EXPECT_EQ(package.name, "bash");
}

TEST(QelInstallationPackageTest, ReadsPathOnlyIfThereIsNoPackage) {
    QelInstallationPackage both;
    both.package = boost::make_shared<QelPackageDeb>();
    both.package->name = "bash";
    both.path = "/tmp/bash.deb";
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(both, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(packageElement, pathElement));
    QelInstallationPackage read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_NE(dynamic_cast<QelPackageDeb*>(read.package.get()), nullptr);
    EXPECT_EQ(read.path, "");

    message.cursor().deleteChild(packageElement);
    message.cursor().putChild(packageElement); // without a name
    read.package.reset();
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.package, nullptr);
    EXPECT_EQ(read.path, "/tmp/bash.deb");
}

} // namespace
} // namespace Qel
