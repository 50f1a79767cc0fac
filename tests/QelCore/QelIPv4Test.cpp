#include "QelCore/QelIPv4.h"

#include <limits>

#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelIPv4Test, IsInitiallyZero) {
    EXPECT_EQ(QelIPv4().numeric(), 0U);
    EXPECT_EQ(QelIPv4().toString(), "0.0.0.0");
}

TEST(QelIPv4Test, FirstNumberOfQuadIsMostSignificantByte) {
    EXPECT_EQ(QelIPv4("10.1.2.3").numeric(), 0x0a010203U);
    EXPECT_EQ(QelIPv4(0x0a010203U).toString(), "10.1.2.3");
    EXPECT_EQ(QelIPv4("255.255.255.255").numeric(), 0xffffffffU);
}

TEST(QelIPv4Test, MalformedStringYieldsZero) {
    for (const char* bad : {"", "10", "10.1", "10.1.2", "10.1.2.3.4", "10.1.2.256", "10.1.2.3 ", " 10.1.2.3",
                            "10.1.2.x", "0x0a.1.2.3", "10.1.2.3/24", "::1", "-1.0.0.0"})
        EXPECT_EQ(QelIPv4(bad), QelIPv4()) << bad;
}

TEST(QelIPv4Test, FromStringRejectsMalformedStringAndLeavesValueUnchanged) {
    QelIPv4 address("10.1.2.3");
    EXPECT_EQ(address.fromString("10.1.2"), -1);
    EXPECT_EQ(address, QelIPv4("10.1.2.3"));
    EXPECT_EQ(address.fromString("0.0.0.0"), 0);
    EXPECT_EQ(address, QelIPv4());
}

TEST(QelIPv4Test, ComparesAsUnsignedNumber) {
    EXPECT_EQ(QelIPv4("127.0.0.1").compare(QelIPv4("128.0.0.1")), -1);
    EXPECT_EQ(QelIPv4("200.0.0.1").compare(QelIPv4("9.0.0.1")), 1);
    EXPECT_EQ(QelIPv4("10.0.0.1").compare(QelIPv4("10.0.0.1")), 0);
    EXPECT_LT(QelIPv4("127.0.0.1"), QelIPv4("128.0.0.1"));
}

TEST(QelIPv4Test, MaskHasPrefixLeadingOnes) {
    EXPECT_EQ(QelIPv4::getNetworkMask(0).toString(), "0.0.0.0");
    EXPECT_EQ(QelIPv4::getNetworkMask(1).toString(), "128.0.0.0");
    EXPECT_EQ(QelIPv4::getNetworkMask(24).toString(), "255.255.255.0");
    EXPECT_EQ(QelIPv4::getNetworkMask(31).toString(), "255.255.255.254");
    EXPECT_EQ(QelIPv4::getNetworkMask(32).toString(), "255.255.255.255");
}

TEST(QelIPv4Test, MaskOfPrefixAbove32IsAllOnes) {
    EXPECT_EQ(QelIPv4::getNetworkMask(33).toString(), "255.255.255.255");
    EXPECT_EQ(QelIPv4::getNetworkMask(64).toString(), "255.255.255.255");
    EXPECT_EQ(QelIPv4::getNetworkMask(std::numeric_limits<unsigned long>::max()).toString(), "255.255.255.255");
}

TEST(QelIPv4Test, PrefixLengthIsInverseOfNetworkMask) {
    for (unsigned prefix = 0; prefix <= QelIPv4::bits; ++prefix)
        EXPECT_EQ(QelIPv4::getPerfixLength(QelIPv4::getNetworkMask(prefix).toString()), prefix);
}

TEST(QelIPv4Test, PrefixLengthCountsLeadingOnesOnly) {
    EXPECT_EQ(QelIPv4::getPerfixLength("255.0.255.0"), 8U);
    EXPECT_EQ(QelIPv4::getPerfixLength("0.255.255.255"), 0U);
}

TEST(QelIPv4Test, PrefixLengthOfMalformedMaskIsZero) {
    EXPECT_EQ(QelIPv4::getPerfixLength(""), 0U);
    EXPECT_EQ(QelIPv4::getPerfixLength("255.255"), 0U);
}

} // namespace
} // namespace Qel
