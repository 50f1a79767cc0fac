#include "QelCore/QelIPConversions.h"

#include <gtest/gtest.h>

namespace Qel {
namespace {

std::string converted(const std::string& netmask) {
    std::string dotted = "something else";
    convertNetmaskToIPFormat(netmask, &dotted);
    return dotted;
}

TEST(QelIPConversionsTest, ParsesDottedQuad) {
    EXPECT_EQ(strToIp("255.255.255.0"), 4294967040U);
    EXPECT_EQ(strToIp("0.0.0.24"), 24U);
}

TEST(QelIPConversionsTest, ParsesDecimalNumber) {
    EXPECT_EQ(strToIp("24"), 24U);
    EXPECT_EQ(strToIp("0"), 0U);
    EXPECT_EQ(strToIp("4294967295"), 4294967295U);
}

TEST(QelIPConversionsTest, MalformedStringYieldsZero) {
    for (const char* bad :
         {"", "x", "24x", " 24", "24 ", "+24", "-24", "0x18", "4294967296", "1.2.3", "1.2.3.4.5", "::1"})
        EXPECT_EQ(strToIp(bad), 0U) << bad;
}

TEST(QelIPConversionsTest, FormatsNumberAsDottedQuad) {
    EXPECT_EQ(ipToStr(4294967040U), "255.255.255.0");
    EXPECT_EQ(ipToStr(0), "0.0.0.0");
}

TEST(QelIPConversionsTest, ConvertsPrefixToDottedMask) {
    EXPECT_EQ(converted("24"), "255.255.255.0");
    EXPECT_EQ(converted("0"), "0.0.0.0");
    EXPECT_EQ(converted("32"), "255.255.255.255");
}

TEST(QelIPConversionsTest, LeavesOtherStringsUnchanged) {
    for (const char* mask : {"", "255.255.255.0", "255.0.255.0", "33", "64", "+24", "ffff::", "x"})
        EXPECT_EQ(converted(mask), mask);
}

TEST(QelIPConversionsTest, ConvertsInPlace) {
    std::string mask = "8";
    convertNetmaskToIPFormat(mask, &mask);
    EXPECT_EQ(mask, "255.0.0.0");
}

} // namespace
} // namespace Qel
