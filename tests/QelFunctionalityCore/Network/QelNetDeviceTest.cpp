#include "QelFunctionalityCore/Network/QelNetDevice.h"

#include <memory>
#include <type_traits>

#include "QelFunctionalityCore/Network/NetworkRecordTest.h"
#include "QelFunctionalityCore/Network/QelNetworkMBase.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::NotNull;
using testing::SizeIs;

using Device = boost::shared_ptr<QelNetDevice>;

template <class T = QelNetDevice> boost::shared_ptr<T> make(const std::string& id = {}) {
    const boost::shared_ptr<T> device(new T);
    device->id = id;
    return device;
}

class QelNetDeviceTest : public NetworkRecordTest {
protected:
    /// Writes and reads through the functors of the class.
    Device passOn(const Device& device) {
        EXPECT_EQ(message.putObject(device, QelWriterDerived<QelNetDevice>(), 1114), 0);
        Device back;
        EXPECT_EQ(message.getObject(back, QelReaderDerived<QelNetDevice>(false), 1114), 0);
        return back;
    }
    void expectStamp(const Device& device, const std::string& type) {
        passOn(device);
        ASSERT_EQ(message.seek(1114), 0);
        EXPECT_EQ(message.curType(), type);
        message.seekUp();
    }
};

TEST_F(QelNetDeviceTest, RoundTripsAllFields) {
    QelNetDevice device;
    device.id = "eth0";
    device.ipAddresses = {QelIPAddress("10.0.0.1/24"), QelIPAddress("2001:db8::1/64")};
    device.text2048 = std::string("a\0b", 3);
    device.text1282 = "10.0.0.254";
    device.text2307 = "up";
    device.flag2066 = device.flag2305 = true;
    device.kind = QelNetDevice::kindSecond;
    const QelNetDevice back = roundTrip(device);
    EXPECT_EQ(back.id, "eth0");
    ASSERT_THAT(back.ipAddresses, SizeIs(2));
    EXPECT_EQ(back.ipAddresses[1].toStringWithNetwork(), "2001:db8::1/64");
    EXPECT_EQ(back.text2048, device.text2048);
    EXPECT_EQ(back.text1282, "10.0.0.254");
    EXPECT_EQ(back.text2307, "up");
    EXPECT_TRUE(back.flag2066);
    EXPECT_TRUE(back.flag2305);
    EXPECT_EQ(back.kind, QelNetDevice::kindSecond);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 2047, 2047, 2048, 1282, 2307, 2066, 2305, 1192));
    EXPECT_EQ(value(2048), "YQBi");
    EXPECT_THAT(childrenIn(1192), ElementsAre(2133));
}

TEST_F(QelNetDeviceTest, EmptyDeviceWritesOnlyID) {
    EXPECT_EQ(write(QelNetDevice()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1010));
    newElement();
    EXPECT_EQ(write(QelNetNIC()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1010));
    newElement();
    EXPECT_EQ(write(QelNetVLAN()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 2051, 2052));
}

TEST_F(QelNetDeviceTest, EmptyElementLeavesFieldsUnchanged) {
    QelNetVLAN device;
    device.id = "kept";
    device.text2048 = "kept";
    device.text2051 = "kept";
    device.kind = 3;
    EXPECT_EQ(read(device), 0);
    EXPECT_EQ(device.id, "kept");
    EXPECT_EQ(device.text2048, "kept");
    EXPECT_EQ(device.text2051, "kept");
    EXPECT_EQ(device.kind, 0) << "a missing kind resets it";
}

TEST_F(QelNetDeviceTest, MissingFlagReadsAsFalse) {
    for (bool QelNetDevice::*const flag : {&QelNetDevice::flag2066, &QelNetDevice::flag2305}) {
        QelNetDevice device;
        device.*flag = true;
        EXPECT_EQ(read(device), 0);
        EXPECT_FALSE(device.*flag);
    }
}

TEST_F(QelNetDeviceTest, MalformedAddressEndsListOnly) {
    putIn(2047, 1262, "10.0.0.1");
    message.putChild(2047);
    putIn(2047, 1262, "10.0.0.3");
    put(1282, "after");
    QelNetDevice device;
    EXPECT_EQ(read(device), 0);
    ASSERT_THAT(device.ipAddresses, SizeIs(1));
    EXPECT_EQ(device.ipAddresses[0].ip, "10.0.0.1");
    EXPECT_EQ(device.text1282, "after");
}

TEST_F(QelNetDeviceTest, FirstKindTakesPrecedence) {
    QelNetDevice device;
    device.kind = 3;
    const QelNetDevice back = roundTrip(device);
    EXPECT_THAT(childrenIn(1192), ElementsAre(1758));
    EXPECT_EQ(back.kind, QelNetDevice::kindFirst);

    newElement();
    message.newChild(1192);
    message.putChild(2133);
    message.putChild(1758);
    message.seekUp();
    EXPECT_EQ(read(device), 0);
    EXPECT_EQ(device.kind, QelNetDevice::kindFirst);
}

TEST_F(QelNetDeviceTest, UnknownKindFailsAndLeavesCursorAtElement) {
    putIn(1192, 1421, "1");
    QelNetDevice device;
    device.kind = 3;
    EXPECT_EQ(read(device), -1);
    EXPECT_EQ(device.kind, 0);
    EXPECT_EQ(message.curID(), 1192);
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read QelNetDevice: element status (kind) is malformed"));
}

TEST_F(QelNetDeviceTest, UnknownKindBitsWriteEmptyElement) {
    QelNetDevice device;
    device.kind = 4;
    EXPECT_EQ(write(device), 0);
    EXPECT_THAT(childrenIn(1192), IsEmpty());
    EXPECT_EQ(read(device), -1);
}

TEST_F(QelNetDeviceTest, BaseFailureFailsDerivedDevices) {
    message.putChild(1192);
    put(1836, "not reached");
    put(2051, "not reached");
    QelNetNIC nic;
    EXPECT_EQ(read(nic), -1);
    EXPECT_THAT(nic.text1836, IsEmpty());
    message.seekUp();
    QelNetVLAN vlan;
    EXPECT_EQ(read(vlan), -1);
    EXPECT_THAT(vlan.text2051, IsEmpty());
    message.seekUp();
    QelNetBridge bridge;
    EXPECT_EQ(read(bridge), -1);
    message.seekUp();
}

TEST_F(QelNetDeviceTest, DerivedFieldsFollowBase) {
    QelNetNIC nic;
    nic.id = "eth0";
    nic.text1836 = "52:54:00:12:34:56";
    EXPECT_EQ(roundTrip(nic).text1836, nic.text1836);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 1836));

    newElement();
    QelNetVLAN vlan;
    vlan.text2051 = "eth0";
    vlan.text2052 = "17";
    vlan.text1836 = "52:54:00:12:34:56";
    const QelNetVLAN back = roundTrip(vlan);
    EXPECT_EQ(back.text2051, "eth0");
    EXPECT_EQ(back.text2052, "17");
    EXPECT_EQ(back.text1836, vlan.text1836);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 2051, 2052, 1836));
}

TEST_F(QelNetDeviceTest, RoundTripsEveryClass) {
    EXPECT_THAT(dynamic_cast<QelNetNIC*>(passOn(make<QelNetNIC>()).get()), NotNull());
    EXPECT_THAT(dynamic_cast<QelNetVLAN*>(passOn(make<QelNetVLAN>()).get()), NotNull());
    const Device bridge = passOn(make<QelNetBridge>("br0"));
    EXPECT_THAT(dynamic_cast<QelNetBridge*>(bridge.get()), NotNull());
    EXPECT_EQ(bridge->id, "br0");
    const Device plain = passOn(make());
    ASSERT_THAT(plain, NotNull());
    EXPECT_TRUE(isExactly<QelNetDevice>(*plain));
}

TEST_F(QelNetDeviceTest, EveryClassHasComplexType) {
    expectStamp(make(), "env:net_device");
    expectStamp(make<QelNetNIC>(), "env:net_nic");
    expectStamp(make<QelNetVLAN>(), "network:net_vlan");
    expectStamp(make<QelNetBridge>(), "network:net_bridge");
}

TEST_F(QelNetDeviceTest, UntypedDeviceIsBaseClassOnRequest) {
    putIn(1114, 1010, "lo");
    Device back;
    EXPECT_EQ(message.getObject(back, QelReaderDerived<QelNetDevice>(false), 1114), -1);
    ASSERT_EQ(message.getObject(back, QelReaderDerived<QelNetDevice>(true), 1114), 0);
    EXPECT_TRUE(isExactly<QelNetDevice>(*back));
    EXPECT_EQ(back->id, "lo");
}

// --- Filters

std::vector<Device> oneOfEach() {
    return {make("lo"), make<QelNetNIC>("eth0"), make<QelNetVLAN>("eth0.17"), make<QelNetBridge>("br0")};
}

/// Returns the IDs of those devices, one of each class, that match the filter.
std::vector<std::string> passing(const Device& filter) {
    std::vector<std::string> ids;
    for (const Device& device : oneOfEach())
        if (checkFilter(device, filter))
            ids.push_back(device->id);
    return ids;
}

TEST(CheckFilterTest, EmptyBaseFilterMatchesEveryDevice) {
    EXPECT_THAT(passing(make()), ElementsAre("lo", "eth0", "eth0.17", "br0"));
}

TEST(CheckFilterTest, EmptyDerivedFilterMatchesOwnClassOnly) {
    EXPECT_THAT(passing(make<QelNetNIC>()), ElementsAre("eth0"));
    EXPECT_THAT(passing(make<QelNetVLAN>()), ElementsAre("eth0.17"));
    EXPECT_THAT(passing(make<QelNetBridge>()), ElementsAre("br0"));
}

TEST(CheckFilterTest, ComparesID) {
    EXPECT_THAT(passing(make("eth0")), ElementsAre("eth0"));
    EXPECT_THAT(passing(make("ETH0")), IsEmpty());
    EXPECT_THAT(passing(make<QelNetNIC>("br0")), IsEmpty());
}

TEST(CheckFilterTest, ComparesNicStringIfSetInFilter) {
    const auto nic = make<QelNetNIC>();
    nic->text1836 = "52:54:00:12:34:56";
    const auto filter = make<QelNetNIC>();
    EXPECT_TRUE(checkFilter(nic, filter));
    filter->text1836 = nic->text1836;
    EXPECT_TRUE(checkFilter(nic, filter));
    filter->text1836 = "52:54:00:12:34:57";
    EXPECT_FALSE(checkFilter(nic, filter));
}

TEST(CheckFilterTest, ComparesOnlyTwoStringsOfVlan) {
    const auto vlan = make<QelNetVLAN>();
    vlan->text2051 = "eth0";
    vlan->text2052 = "17";
    const auto filter = make<QelNetVLAN>();
    filter->text1836 = "another";
    EXPECT_TRUE(checkFilter(vlan, filter));
    filter->text2051 = "eth0";
    EXPECT_TRUE(checkFilter(vlan, filter));
    filter->text2052 = "18";
    EXPECT_FALSE(checkFilter(vlan, filter));
    filter->text2051 = "eth1";
    filter->text2052 = "17";
    EXPECT_FALSE(checkFilter(vlan, filter));
}

TEST(CheckFilterTest, RequiresEveryAddressOfFilter) {
    const auto device = make();
    device->ipAddresses = {QelIPAddress("10.0.0.1/24"), QelIPAddress("10.0.0.2/16")};
    const auto filter = make();
    filter->ipAddresses = {QelIPAddress("10.0.0.2")};
    EXPECT_TRUE(checkFilter(device, filter)) << "any mask";
    filter->ipAddresses = {QelIPAddress("10.0.0.2"), QelIPAddress("10.0.0.1/24")};
    EXPECT_TRUE(checkFilter(device, filter)) << "any order";
    filter->ipAddresses.emplace_back("10.0.0.3");
    EXPECT_FALSE(checkFilter(device, filter));
    filter->ipAddresses = {QelIPAddress("10.0.0.2/24")};
    EXPECT_FALSE(checkFilter(device, filter)) << "address and mask of different entries";
    EXPECT_FALSE(checkFilter(make(), filter)) << "device without addresses";
}

TEST(CheckFilterTest, AddressWithMaskOnlyMatchesBothMaskForms) {
    const auto device = make();
    device->ipAddresses = {QelIPAddress("10.0.0.1/24")};
    for (const char* const mask : {"24", "255.255.255.0"}) {
        const auto filter = make();
        filter->ipAddresses.emplace_back();
        filter->ipAddresses.front().netmask = mask;
        EXPECT_TRUE(checkFilter(device, filter)) << mask;
    }
    const auto other = make();
    other->ipAddresses.emplace_back(std::string(), std::string("25"));
    EXPECT_FALSE(checkFilter(device, other));
}

TEST(CheckFilterTest, ComparesBytesIfSetInFilter) {
    const auto device = make<QelNetBridge>();
    device->text2048 = "a";
    const auto filter = make();
    EXPECT_TRUE(checkFilter(device, filter));
    filter->text2048 = "a";
    EXPECT_TRUE(checkFilter(device, filter));
    filter->text2048 = "b";
    EXPECT_FALSE(checkFilter(device, filter));
}

TEST(CheckFilterTest, IgnoresOtherFields) {
    const auto filter = make();
    filter->text1282 = filter->text2307 = "x";
    filter->flag2066 = filter->flag2305 = true;
    filter->kind = 1;
    EXPECT_THAT(passing(filter), SizeIs(4));
}

// --- Service base class

TEST(QelFunctionalTest, ServiceIsDestroyedThroughRootClass) {
    struct Service : QelNetworkMBase {
        explicit Service(bool& isDestroyed) : destroyed(isDestroyed) {}
        ~Service() override { destroyed = true; }
        bool& destroyed;
    };
    static_assert(std::is_abstract_v<QelFunctional> && std::is_abstract_v<QelNetworkMBase>);
    bool destroyed = false;
    std::unique_ptr<QelFunctional> service(new Service(destroyed));
    EXPECT_THAT(dynamic_cast<QelNetworkMBase*>(service.get()), NotNull());
    service.reset();
    EXPECT_TRUE(destroyed);
}

} // namespace
} // namespace Qel
