#include "QelFunctionalityCore/Values/QelLimitedLengthString.h"

#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {
namespace {

using Name = limited_length_string<16>;

constexpr int element = 1007;

TEST(QelLimitedLengthStringTest, RoundTrips) {
    TestTree tree;
    tree->newChild(element);
    EXPECT_EQ(QelWriterLimitedLengthString()(*tree, Name("abcdefghijklmno")), 0);
    EXPECT_EQ(childValue(*tree, 0), "abcdefghijklmno");
    Name read;
    EXPECT_EQ(QelReaderLimitedLengthString()(*tree, read), 0);
    EXPECT_EQ(read, "abcdefghijklmno");
}

TEST(QelLimitedLengthStringTest, UnsetStringWritesNothing) {
    TestTree tree;
    tree->newChild(element);
    tree->putValue(std::string("old"), 0);
    EXPECT_EQ(QelWriterLimitedLengthString()(*tree, Name()), 0);
    EXPECT_EQ(childValue(*tree, 0), "old");
}

TEST(QelLimitedLengthStringTest, SpecifiedEmptyStringWritesEmptyValue) {
    TestTree tree;
    tree->newChild(element);
    tree->putValue(std::string("old"), 0);
    EXPECT_EQ(QelWriterLimitedLengthString()(*tree, Name("")), 0);
    Name read;
    EXPECT_EQ(QelReaderLimitedLengthString()(*tree, read), 0);
    EXPECT_TRUE(read.isSpecified());
    EXPECT_EQ(read.length(), 0U);
}

TEST(QelLimitedLengthStringTest, MissingElementFailsAndLeavesValueUnchanged) {
    TestTree tree;
    Name read("kept");
    EXPECT_EQ(tree->getObject(read, QelReaderLimitedLengthString(), element), -1);
    EXPECT_EQ(read, "kept");
}

TEST(QelLimitedLengthStringDeathTest, TooLongStringTerminatesProcess) {
    TestTree tree;
    tree->putValue(std::string("abcdefghijklmnop"), element);
    Name read;
    EXPECT_DEATH(static_cast<void>(tree->getObject(read, QelReaderLimitedLengthString(), element)),
                 "QelContainers:108");
}

} // namespace
} // namespace Qel
