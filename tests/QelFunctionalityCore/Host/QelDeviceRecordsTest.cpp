#include "QelFunctionalityCore/Host/QelDeviceRecords.h"

#include <typeinfo>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int deviceElement = 1114;

template <class Device> void expectCloneKeepsClass() {
    Device device;
    device.name = "sda";
    const boost::shared_ptr<QelCommonDevice> copy = static_cast<const QelCommonDevice&>(device).clone();
    ASSERT_NE(copy, nullptr);
    const QelCommonDevice& made = *copy;
    EXPECT_EQ(typeid(made).name(), typeid(Device).name());
    EXPECT_EQ(copy->name, "sda");
}

TEST(QelCommonDeviceTest, CloneKeepsDynamicType) {
    expectCloneKeepsClass<QelCommonDevice>();
    expectCloneKeepsClass<QelWindowsDevice>();
    expectCloneKeepsClass<QelScsiDevice>();
}

TEST(QelCommonDeviceTest, DerivedDeviceIsStampedWithItsOwnType) {
    const TestMessage message;
    QelScsiDevice device;
    device.description = "plain <text>";
    device.f2112 = "id";
    EXPECT_EQ(message.cursor().putObj(device, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1496, 2112));
    EXPECT_EQ(childValue(message.cursor(), 1496), "plain <text>");
    expectStampOf<QelScsiDevice::Writer>(message.cursor());
    EXPECT_EQ(QelScsiDevice::Writer::getTypeID(), 303);

    boost::shared_ptr<QelCommonDevice> read;
    EXPECT_EQ(message.cursor().getObject(read, QelReaderDerived<QelCommonDevice>(false), 0), 0);
    const auto* const scsi = dynamic_cast<const QelScsiDevice*>(read.get());
    ASSERT_NE(scsi, nullptr);
    EXPECT_EQ(scsi->f2112, "id");
}

TEST(QelDevMountInfoTest, WriterFailsWithoutRequiredStringButWritesOtherFields) {
    QelDevMountInfo info;
    info.f1114 = "/dev/sda";
    info.f1250 = "eth0";
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(info, 0), -1);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1114, 1116, 1118, 1024, 1250));
}

TEST(QelDevMountInfoTest, RequiredStringIsWrittenSecondToLastAndReadLast) {
    QelDevMountInfo info;
    info.f1117 = "/mnt";
    info.f1250 = "eth0";
    info.f1116 = true;
    info.size = 1LL << 40;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(info, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1116, 1118, 1024, 1117, 1250));
    message.cursor().deleteChild(1117);
    QelDevMountInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_TRUE(read.f1116);
    EXPECT_EQ(read.size, 1LL << 40);
    EXPECT_EQ(read.f1250, "eth0");
}

TEST(QelDevMountInfoTest, ReaderIgnoresUnreadableOptionalFields) {
    const TestMessage message;
    message.cursor().putValue("many", 1024);
    message.cursor().putValue("perhaps", 1116);
    message.cursor().putValue("/mnt", 1117);
    QelDevMountInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.f1117, "/mnt");
    EXPECT_EQ(read.size, 0);
}

TEST(QelForwardPointTest, WriterRequiresDevice) {
    QelForwardPoint point;
    point.eid = someEID;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(point, 0), -1);
}

TEST(QelForwardPointTest, InvalidEnvironmentIsOmittedAndOptional) {
    QelForwardPoint point;
    point.device = boost::make_shared<QelWindowsDevice>();
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(point, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(deviceElement));
    QelForwardPoint read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_NE(dynamic_cast<QelWindowsDevice*>(read.device.get()), nullptr);
    message.cursor().deleteChild(deviceElement);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelForwardPointTest, UntypedDeviceIsReadAsBaseClass) {
    const TestMessage message;
    message.cursor().newChild(deviceElement);
    message.cursor().putValue("sda", 1026);
    message.cursor().seekUp();
    QelForwardPoint read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    ASSERT_NE(read.device, nullptr);
    const QelCommonDevice& device = *read.device;
    EXPECT_EQ(typeid(device), typeid(QelCommonDevice));
    EXPECT_EQ(device.name, "sda");
}

TEST(QelForwardDeviceTest, RequiresBothEnds) {
    QelForwardDevice forwarded;
    forwarded.source.device = boost::make_shared<QelCommonDevice>();
    const TestMessage incomplete;
    EXPECT_EQ(incomplete.cursor().putObj(forwarded, 0), -1);
    forwarded.destination.device = boost::make_shared<QelCommonDevice>();
    for (const int element : {1803, 1338}) {
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(forwarded, 0), 0);
        QelForwardDevice read;
        EXPECT_EQ(message.cursor().getObj(read, 0), 0);
        message.cursor().deleteChild(element);
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << element;
    }
}

TEST(QelDeviceInfoTest, EmptyListsAreOmittedAndOptional) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelDeviceInfo(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    QelDeviceInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
}

} // namespace
} // namespace Qel
