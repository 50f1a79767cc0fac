#include "QelCore/QelIPv6.h"

#include <random>

#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelIPv6Test, IsInitiallyTheAnyAddress) {
    EXPECT_TRUE(QelIPv6().isAny());
    EXPECT_EQ(QelIPv6().toString(), "::");
}

TEST(QelIPv6Test, StoresMostSignificantWordFirst) {
    const QelIPv6 address("2001:db8:1:2:3:4:5:6");
    EXPECT_EQ(address.words(), (QelIPv6::Words{0x20010db8, 0x00010002, 0x00030004, 0x00050006}));
    EXPECT_FALSE(address.isAny());
}

TEST(QelIPv6Test, FormatsCanonicalString) {
    EXPECT_EQ(QelIPv6("2001:0DB8:0:0:0:0:0:0001").toString(), "2001:db8::1");
    EXPECT_EQ(QelIPv6("::1").toString(), "::1");
    EXPECT_EQ(QelIPv6("::ffff:10.0.0.1").toString(), "::ffff:10.0.0.1");
}

TEST(QelIPv6Test, ParsesIPv4StringAsIPv4CompatibleAddress) {
    EXPECT_EQ(QelIPv6("10.0.0.1").words(), (QelIPv6::Words{0, 0, 0, 0x0a000001}));
    EXPECT_EQ(QelIPv6("10.0.0.1"), QelIPv6("::10.0.0.1"));
    EXPECT_EQ(QelIPv6("10.0.0.1"), QelIPv6(QelIPv4("10.0.0.1")));
    EXPECT_EQ(QelIPv6("10.0.0.1").toString(), "::10.0.0.1");
}

TEST(QelIPv6Test, MalformedStringYieldsTheAnyAddress) {
    for (const char* bad : {"", "x", ":", ":::", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9", "::1 ", " ::1", "::g", "::12345",
                            "fe80::1%eth0", "2001:db8::/32", "10.0.0.256", "10.0.0"})
        EXPECT_TRUE(QelIPv6(bad).isAny()) << bad;
}

TEST(QelIPv6Test, RandomAddressesRoundTripThroughString) {
    std::mt19937 random(20261120);
    for (int i = 0; i < 1000; ++i) {
        QelIPv6::Words words;
        for (std::uint32_t& word : words)
            word = random() % 3 == 0 ? 0 : random() & 0xffffffffU;
        EXPECT_EQ(QelIPv6(QelIPv6(words).toString()), QelIPv6(words));
    }
}

TEST(QelIPv6Test, ComparesWordsAsUnsignedFromMostSignificant) {
    EXPECT_EQ(QelIPv6("::1").compare(QelIPv6("::2")), -1);
    EXPECT_EQ(QelIPv6("::ffff:ffff").compare(QelIPv6("::1:0:0")), -1);
    EXPECT_EQ(QelIPv6("ff02::1").compare(QelIPv6("2001:db8::1")), 1);
    EXPECT_EQ(QelIPv6("8000::").compare(QelIPv6("7fff::")), 1);
    EXPECT_EQ(QelIPv6("1::").compare(QelIPv6("0:ffff::")), 1);
    EXPECT_EQ(QelIPv6("fe80::1").compare(QelIPv6("FE80:0::1")), 0);
}

TEST(QelIPv6Test, StringWithColonResemblesIPv6Address) {
    EXPECT_TRUE(QelIPv6::isResembling("::1"));
    EXPECT_TRUE(QelIPv6::isResembling("not an address: really"));
    EXPECT_FALSE(QelIPv6::isResembling("10.0.0.1"));
    EXPECT_FALSE(QelIPv6::isResembling(""));
}

TEST(IPv4CompatibleTest, ExtractsIPv4AddressFromLowestBits) {
    const auto compatible = IPv6Format::IPv4Compatible::test(QelIPv6("::10.0.0.1"));
    ASSERT_TRUE(compatible);
    EXPECT_EQ(compatible->v4().numeric(), 0x0a000001U);
}

TEST(IPv4CompatibleTest, ExcludesAnyAndLoopbackAddresses) {
    EXPECT_TRUE(IPv6Format::IPv4Compatible::test(QelIPv6("::2")));
    EXPECT_FALSE(IPv6Format::IPv4Compatible::test(QelIPv6("::1")));
    EXPECT_FALSE(IPv6Format::IPv4Compatible::test(QelIPv6("::")));
}

TEST(IPv4CompatibleTest, RejectsAddressWithHigherBits) {
    for (const char* other :
         {"1::10.0.0.1", "0:1::10.0.0.1", "0:0:1::10.0.0.1", "::1:0:10.0.0.1", "::1:10.0.0.1", "::ffff:10.0.0.1"})
        EXPECT_FALSE(IPv6Format::IPv4Compatible::test(QelIPv6(other))) << other;
}

} // namespace
} // namespace Qel
