#include "QelFunctionalityCore/Values/QelIPFunctors.h"

#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {
namespace {

constexpr int element = 1262;

template <class Writer, class Value> std::string written(const Writer& writer, const Value& value) {
    TestTree tree;
    EXPECT_EQ(tree->putObject(value, writer, element), 0);
    return childValue(*tree, element);
}

TEST(QelIPFunctorsTest, WritesIPv6AddressAsString) {
    EXPECT_EQ(written(QelIPWriter(), QelIPv6("FE80:0::1")), "fe80::1");
    EXPECT_EQ(written(QelIPWriter(), QelIPv6("10.0.0.1")), "::10.0.0.1");

    TestTree tree;
    tree->putValue(std::string("fe80::1"), element);
    QelIPv6 read;
    EXPECT_EQ(tree->getObject(read, QelIPReader(), element), 0);
    EXPECT_EQ(read, QelIPv6("fe80::1"));
}

TEST(QelIPFunctorsTest, WritesNumberAsIPv4Address) {
    EXPECT_EQ(written(QelIPWriter(), 0xffffff00U), "255.255.255.0");

    TestTree tree;
    tree->putValue(std::string("255.255.255.0"), element);
    unsigned int read = 0;
    EXPECT_EQ(tree->getObject(read, QelIPReader(), element), 0);
    EXPECT_EQ(read, 0xffffff00U);
}

TEST(QelIPFunctorsTest, ReadsDecimalNumberUnchanged) {
    TestTree tree;
    tree->putValue(24, element);
    unsigned int read = 0;
    EXPECT_EQ(tree->getObject(read, QelIPReader(), element), 0);
    EXPECT_EQ(read, 24U);
}

TEST(QelIPFunctorsTest, InvalidAddressReadsAsAnyAddress) {
    for (const char* text : {"none", ""}) {
        TestTree tree;
        tree->putValue(std::string(text), element);
        QelIPv6 address("::1");
        EXPECT_EQ(tree->getObject(address, QelIPReader(), element), 0);
        EXPECT_TRUE(address.isAny());
        unsigned int number = 5;
        EXPECT_EQ(tree->getObject(number, QelIPReader(), element), 0);
        EXPECT_EQ(number, 0U);
    }
}

TEST(QelIPFunctorsTest, MissingElementFailsAndLeavesValueUnchanged) {
    TestTree tree;
    QelIPv6 address("::1");
    unsigned int number = 5;
    EXPECT_EQ(tree->getObject(address, QelIPReader(), element), -1);
    EXPECT_EQ(tree->getObject(number, QelIPReader(), element), -1);
    EXPECT_EQ(address, QelIPv6("::1"));
    EXPECT_EQ(number, 5U);
}

TEST(QelIPFunctorsTest, PrettyWriterWritesEmbeddedIPv4Address) {
    EXPECT_EQ(written(QelIPPrettyWriter(), QelIPv6("10.0.0.1")), "10.0.0.1");
    EXPECT_EQ(written(QelIPPrettyWriter(), QelIPv6("fe80::1")), "fe80::1");
    EXPECT_EQ(written(QelIPPrettyWriter(), QelIPv6("::1")), "::1");
    EXPECT_EQ(written(QelIPPrettyWriter(), QelIPv6()), "::");
}

} // namespace
} // namespace Qel
