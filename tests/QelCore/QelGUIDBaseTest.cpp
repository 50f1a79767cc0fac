#include "QelCore/QelGUIDBase.h"

#include <cstring>
#include <limits>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Qel {
namespace {

constexpr unsigned char countingBytes[16] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                                             0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff};
constexpr const char* countingText = "00112233-4455-6677-8899-aabbccddeeff";

QelGUIDBase parsed(const char* text) {
    QelGUIDBase guid;
    EXPECT_EQ(guid.fromString(text), 0) << text;
    return guid;
}

TEST(QelGUIDBaseTest, DefaultConstructedIsNullAndInvalid) {
    const QelGUIDBase guid;
    EXPECT_FALSE(guid.isValid());
    EXPECT_EQ(guid.toString(), "00000000-0000-0000-0000-000000000000");
    EXPECT_EQ(guid, QelGUIDBase(0, 0));
}

TEST(QelGUIDBaseTest, AnySetBitMakesItValid) {
    for (std::size_t byte = 0; byte < QelGUIDBase::byteCount; ++byte) {
        unsigned char bytes[16] = {};
        bytes[byte] = 1;
        EXPECT_TRUE(QelGUIDBase(bytes).isValid()) << byte;
    }
}

TEST(QelGUIDBaseTest, StringIsBytesInOrderInLowerCase) {
    EXPECT_EQ(QelGUIDBase(countingBytes).toString(), countingText);
}

TEST(QelGUIDBaseTest, MemoryLayoutIsBytesInOrder) {
    const QelGUIDBase guid = parsed(countingText);
    EXPECT_EQ(std::memcmp(&guid, countingBytes, sizeof guid), 0);
}

TEST(QelGUIDBaseTest, AcceptsUnalignedBytes) {
    unsigned char shifted[17];
    std::memcpy(shifted + 1, countingBytes, sizeof countingBytes);
    EXPECT_EQ(QelGUIDBase(shifted + 1).toString(), countingText);
}

TEST(QelGUIDBaseTest, HalvesAreLittleEndianNumbers) {
    unsigned long long first = 0;
    unsigned long long second = 0;
    QelGUIDBase(countingBytes).getData(first, second);
    EXPECT_EQ(first, 0x7766554433221100U);
    EXPECT_EQ(second, 0xffeeddccbbaa9988U);
}

TEST(QelGUIDBaseTest, RoundTripsThroughHalves) {
    unsigned long long first = 0;
    unsigned long long second = 0;
    const QelGUIDBase guid(countingBytes);
    guid.getData(first, second);
    EXPECT_EQ(QelGUIDBase(static_cast<long long>(first), static_cast<long long>(second)), guid);
}

TEST(QelGUIDBaseTest, ParsesUpperAndLowerCase) {
    EXPECT_EQ(parsed("00112233-4455-6677-8899-AABBCCDDEEFF"), QelGUIDBase(countingBytes));
}

TEST(QelGUIDBaseTest, RejectsMalformedStringAndLeavesValueUnchanged) {
    for (const char* bad : {"", "0", "00112233-4455-6677-8899-aabbccddeef", "00112233-4455-6677-8899-aabbccddeeff0",
                            " 00112233-4455-6677-8899-aabbccddeeff", "00112233-4455-6677-8899-aabbccddeeff ",
                            "{00112233-4455-6677-8899-aabbccddeeff}", "00112233445566778899aabbccddeeff",
                            "0011223344-55-6677-8899-aabbccddeeff", "00112233-4455-6677-8899-aabbccddeefg",
                            "00112233-4455-6677-8899+aabbccddeeff", "-0112233-4455-6677-8899-aabbccddeeff",
                            "\200\200112233-4455-6677-8899-aabbccddeeff"}) {
        QelGUIDBase guid(countingBytes);
        EXPECT_EQ(guid.fromString(bad), -1) << bad;
        EXPECT_EQ(guid, QelGUIDBase(countingBytes)) << bad;
    }
}

TEST(QelGUIDBaseTest, RejectsNullPointerAndLeavesValueUnchanged) {
    QelGUIDBase guid(countingBytes);
    EXPECT_EQ(guid.fromString(nullptr), -1);
    EXPECT_EQ(guid, QelGUIDBase(countingBytes));
}

TEST(QelGUIDBaseTest, GeneratedIdentifiersAreValidDistinctAndRoundTrip) {
    std::set<QelGUIDBase> seen;
    for (int i = 0; i < 1000; ++i) {
        QelGUIDBase guid;
        guid.generate();
        EXPECT_TRUE(guid.isValid());
        EXPECT_EQ(parsed(guid.toString().c_str()), guid);
        seen.insert(guid);
    }
    EXPECT_THAT(seen, testing::SizeIs(1000));
}

TEST(QelGUIDBaseTest, OrdersByFirstThenSecondHalf) {
    EXPECT_LT(QelGUIDBase(1, 9), QelGUIDBase(2, 0));
    EXPECT_LT(QelGUIDBase(1, 0), QelGUIDBase(1, 1));
    EXPECT_FALSE(QelGUIDBase(2, 0) < QelGUIDBase(1, 9));
    EXPECT_FALSE(QelGUIDBase(1, 1) < QelGUIDBase(1, 1));
    EXPECT_NE(QelGUIDBase(1, 0), QelGUIDBase(0, 1));
}

TEST(QelGUIDBaseTest, OrdersHalvesAsUnsignedNumbers) {
    constexpr long long highest = -1;
    constexpr long long largestPositive = std::numeric_limits<long long>::max();
    EXPECT_LT(QelGUIDBase(largestPositive, 0), QelGUIDBase(highest, 0));
    EXPECT_LT(QelGUIDBase(0, largestPositive), QelGUIDBase(0, highest));
}

TEST(QelGUIDBaseTest, LeadingBitsAreUpperBitsOfFirstHalf) {
    EXPECT_EQ(QelGUIDBase(0x0123456789abcdefLL, -1).leadingBits(), 0x01234567U);
}

TEST(QelGUIDBaseTest, OrderDiffersFromStringOrder) {
    const QelGUIDBase largerText = parsed("01000000-0000-0000-0000-000000000000");
    const QelGUIDBase largerHalf = parsed("00010000-0000-0000-0000-000000000000");
    EXPECT_LT(largerText, largerHalf);
    EXPECT_GT(largerText.toString(), largerHalf.toString());
}

TEST(QelGUIDBaseTest, AllComparisonsAgree) {
    const QelGUIDBase values[] = {{0, 0}, {0, 1}, {0, -1}, {1, 0}, {-1, 0}, {-1, -1}};
    for (std::size_t i = 0; i < std::size(values); ++i)
        for (std::size_t j = 0; j < std::size(values); ++j) {
            EXPECT_EQ(values[i] < values[j], i < j);
            EXPECT_EQ(values[i] > values[j], i > j);
            EXPECT_EQ(values[i] <= values[j], i <= j);
            EXPECT_EQ(values[i] == values[j], i == j);
            EXPECT_EQ(values[i] != values[j], i != j);
            EXPECT_EQ(values[i] <=> values[j], i <=> j);
        }
}

} // namespace
} // namespace Qel
