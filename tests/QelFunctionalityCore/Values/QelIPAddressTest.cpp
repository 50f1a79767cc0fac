#include "QelFunctionalityCore/Values/QelIPAddress.h"

#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {
namespace {

constexpr int netmaskElement = 1784;
constexpr int ipElement = 1262;

std::string writtenNetmask(const QelIPAddress& address) {
    TestTree tree;
    EXPECT_EQ(QelIPAddress::Writer()(*tree, address), 0);
    return childValue(*tree, netmaskElement);
}

TEST(QelIPAddressTest, IsInitiallyEmpty) {
    EXPECT_EQ(QelIPAddress().ip, "");
    EXPECT_EQ(QelIPAddress().netmask, "");
    EXPECT_EQ(QelIPAddress().toStringWithNetwork(), "");
}

TEST(QelIPAddressTest, ConvertsDottedMaskAfterSlashToPrefix) {
    const QelIPAddress address("10.0.0.1/255.255.255.0");
    EXPECT_EQ(address.ip, "10.0.0.1");
    EXPECT_EQ(address.netmask, "24");
    EXPECT_EQ(writtenNetmask(address), "255.255.255.0");
}

TEST(QelIPAddressTest, KeepsPrefixAfterSlash) {
    const QelIPAddress address("10.0.0.1/24");
    EXPECT_EQ(address.ip, "10.0.0.1");
    EXPECT_EQ(address.netmask, "24");
    EXPECT_EQ(address.toStringWithNetwork(), "10.0.0.1/24");
}

TEST(QelIPAddressTest, StringWithoutSlashIsAddress) {
    EXPECT_EQ(QelIPAddress("10.0.0.1").ip, "10.0.0.1");
    EXPECT_EQ(QelIPAddress("10.0.0.1").netmask, "");
    EXPECT_EQ(QelIPAddress("10.0.0.1").toStringWithNetwork(), "10.0.0.1");
}

TEST(QelIPAddressTest, NothingAfterSlashLeavesNetmaskEmpty) {
    EXPECT_EQ(QelIPAddress("10.0.0.1/").ip, "10.0.0.1");
    EXPECT_EQ(QelIPAddress("10.0.0.1/").netmask, "");
}

TEST(QelIPAddressTest, SplitsAtFirstSlashOnly) {
    EXPECT_EQ(QelIPAddress("::1/64/3").ip, "::1");
    EXPECT_EQ(QelIPAddress("::1/64/3").netmask, "64/3");
}

TEST(QelIPAddressTest, ConstructsFromAddressAndMask) {
    EXPECT_EQ(QelIPAddress("10.0.0.1", "255.255.0.0").netmask, "16");
    EXPECT_EQ(QelIPAddress("10.0.0.1", "16").netmask, "16");
    EXPECT_EQ(QelIPAddress("10.0.0.1", "").netmask, "");
}

TEST(QelIPAddressTest, RejectsPrefixLongerThanAddress) {
    EXPECT_EQ(QelIPAddress("10.0.0.1", 32U).netmask, "32");
    EXPECT_EQ(QelIPAddress("10.0.0.1", 33U).netmask, "");
    EXPECT_EQ(QelIPAddress("10.0.0.1", 0U).netmask, "0");
    EXPECT_EQ(QelIPAddress("::1", 128U).netmask, "128");
    EXPECT_EQ(QelIPAddress("::1", 129U).netmask, "");
    EXPECT_EQ(QelIPAddress("10.0.0.1", 4294967295U).netmask, "");
}

TEST(QelIPAddressTest, KeepsMaskOfIPv6AddressUnchanged) {
    QelIPAddress address("fe80::1");
    address.setNetmask("255.255.255.0");
    EXPECT_EQ(address.netmask, "255.255.255.0");
    EXPECT_EQ(writtenNetmask(address), "255.255.255.0");
}

TEST(QelIPAddressTest, EmptyMaskClearsNetmask) {
    QelIPAddress address("10.0.0.1/24");
    address.setNetmask("");
    EXPECT_EQ(address.netmask, "");
}

TEST(QelIPAddressTest, WritesIPv6PrefixUnchanged) {
    EXPECT_EQ(writtenNetmask(QelIPAddress("fe80::1/64")), "64");
}

TEST(QelIPAddressTest, WritesIPv4PrefixAsDottedMask) {
    EXPECT_EQ(writtenNetmask(QelIPAddress("10.0.0.1/0")), "0.0.0.0");
    EXPECT_EQ(writtenNetmask(QelIPAddress("10.0.0.1/32")), "255.255.255.255");
}

TEST(QelIPAddressTest, WritesDottedNetmaskUnchanged) {
    QelIPAddress address("10.0.0.1");
    address.netmask = "255.0.255.0";
    EXPECT_EQ(writtenNetmask(address), "255.0.255.0");
}

TEST(QelIPAddressTest, OmitsEmptyNetmask) {
    TestTree tree;
    EXPECT_EQ(QelIPAddress::Writer()(*tree, QelIPAddress("10.0.0.1")), 0);
    EXPECT_NE(tree->seekPresence(netmaskElement), 0);
    EXPECT_EQ(childValue(*tree, ipElement), "10.0.0.1");
    EXPECT_EQ(countChildren(*tree), 1);
}

TEST(QelIPAddressTest, WritesNetmaskBeforeAddress) {
    TestTree tree;
    EXPECT_EQ(QelIPAddress::Writer()(*tree, QelIPAddress("10.0.0.1/24")), 0);
    ASSERT_EQ(tree->firstChild(), 0);
    EXPECT_EQ(tree->curID(), netmaskElement);
    ASSERT_EQ(tree->nextSibling(), 0);
    EXPECT_EQ(tree->curID(), ipElement);
    EXPECT_NE(tree->nextSibling(), 0);
}

TEST(QelIPAddressTest, WritesEmptyAddress) {
    TestTree tree;
    EXPECT_EQ(QelIPAddress::Writer()(*tree, QelIPAddress()), 0);
    EXPECT_EQ(tree->seekPresence(ipElement), 0);
}

TEST(QelIPAddressTest, RoundTrips) {
    for (const char* text : {"10.0.0.1/24", "10.0.0.1", "10.0.0.1/0", "fe80::1/64", "fe80::1"}) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(QelIPAddress(text), 2047), 0);
        QelIPAddress read;
        EXPECT_EQ(tree->getObj(read, 2047), 0);
        EXPECT_EQ(read.toStringWithNetwork(), text);
    }
}

TEST(QelIPAddressTest, RequiresAddress) {
    TestTree tree;
    tree->putValue(std::string("255.0.0.0"), netmaskElement);
    QelIPAddress read("10.0.0.1/24");
    EXPECT_EQ(QelIPAddress::Reader()(*tree, read), -1);
    EXPECT_EQ(read.ip, "10.0.0.1");
}

TEST(QelIPAddressTest, MissingNetmaskClearsPreviousOne) {
    TestTree tree;
    tree->putValue(std::string("10.0.0.2"), ipElement);
    QelIPAddress read("10.0.0.1/24");
    EXPECT_EQ(QelIPAddress::Reader()(*tree, read), 0);
    EXPECT_EQ(read.toStringWithNetwork(), "10.0.0.2");
}

TEST(QelIPAddressTest, NetmaskIsInterpretedForNewAddress) {
    TestTree tree;
    tree->putValue(std::string("255.255.0.0"), netmaskElement);
    tree->putValue(std::string("10.0.0.2"), ipElement);
    QelIPAddress read("fe80::1");
    EXPECT_EQ(QelIPAddress::Reader()(*tree, read), 0);
    EXPECT_EQ(read.netmask, "16");
}

TEST(QelIPAddressTest, IPv4AddressesCompareByNumber) {
    EXPECT_EQ(QelIPAddress("9.0.0.1").compare(QelIPAddress("10.0.0.1")), -1);
    EXPECT_EQ(QelIPAddress("200.0.0.1").compare(QelIPAddress("10.0.0.1")), 1);
    EXPECT_EQ(QelIPAddress("10.0.0.1").compare(QelIPAddress("10.0.0.1")), 0);
}

TEST(QelIPAddressTest, IPv6AddressesCompareByNumber) {
    EXPECT_EQ(QelIPAddress("fe80::1").compare(QelIPAddress("FE80:0::1")), 0);
    EXPECT_EQ(QelIPAddress("::9").compare(QelIPAddress("::10")), -1);
}

TEST(QelIPAddressTest, IPv4AddressComparesAsIPv4Compatible) {
    EXPECT_EQ(QelIPAddress("10.0.0.1").compare(QelIPAddress("::10.0.0.1")), 0);
    EXPECT_EQ(QelIPAddress("::10.0.0.2").compare(QelIPAddress("10.0.0.1")), 1);
    EXPECT_EQ(QelIPAddress("255.0.0.1").compare(QelIPAddress("fe80::1")), -1);
}

TEST(QelIPAddressTest, NetmasksOfEqualAddressesCompareAsStrings) {
    EXPECT_EQ(QelIPAddress("10.0.0.1/8").compare(QelIPAddress("10.0.0.1/16")), 1);
    EXPECT_EQ(QelIPAddress("10.0.0.1/16").compare(QelIPAddress("10.0.0.1/8")), -1);
    EXPECT_EQ(QelIPAddress("10.0.0.1").compare(QelIPAddress("10.0.0.1/8")), -1);
    EXPECT_EQ(QelIPAddress("10.0.0.1/8").compare(QelIPAddress("10.0.0.2/4")), -1);
}

TEST(IpCompareTest, EmptyAddressMatchesEveryAddress) {
    const ipCompare matches{QelIPAddress()};
    EXPECT_TRUE(matches(QelIPAddress()));
    EXPECT_TRUE(matches(QelIPAddress("10.0.0.1/24")));
    EXPECT_TRUE(matches(QelIPAddress("fe80::1/64")));
}

TEST(IpCompareTest, AddressesMatchAsStrings) {
    EXPECT_TRUE(ipCompare(QelIPAddress("10.0.0.1"))(QelIPAddress("10.0.0.1/24")));
    EXPECT_FALSE(ipCompare(QelIPAddress("10.0.0.1"))(QelIPAddress("10.0.0.2")));
    EXPECT_FALSE(ipCompare(QelIPAddress("::1"))(QelIPAddress("0::1")));
}

TEST(IpCompareTest, NetmasksMatchInEitherForm) {
    QelIPAddress dotted("10.0.0.1");
    dotted.netmask = "255.255.255.0";
    EXPECT_TRUE(ipCompare(QelIPAddress("", "24"))(dotted));
    EXPECT_TRUE(ipCompare(dotted)(QelIPAddress("10.0.0.1/24")));
    EXPECT_FALSE(ipCompare(QelIPAddress("", "24"))(QelIPAddress("10.0.0.1/16")));
    EXPECT_FALSE(ipCompare(QelIPAddress("", "24"))(QelIPAddress("10.0.0.1")));
    EXPECT_FALSE(ipCompare(QelIPAddress("fe80::1/64"))(QelIPAddress("fe80::1/65")));
}

} // namespace
} // namespace Qel
