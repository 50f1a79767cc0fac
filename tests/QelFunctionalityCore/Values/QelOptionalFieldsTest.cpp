#include "QelFunctionalityCore/Values/QelOptionalFields.h"

#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"
#include "QelFunctionalityCore/Values/QelGUID.h"

namespace Qel {
namespace {

constexpr int element = 1705;

template <class T> QelOptionalProperty<T> specified(const T& value) {
    QelOptionalProperty<T> property;
    property = value;
    return property;
}

TEST(QelOptionalFieldsTest, ElementSpecifiesProperty) {
    TestTree tree;
    tree->putValue(7, element);
    QelOptionalProperty<int> number;
    EXPECT_EQ(readOptionalProperty(*tree, number, element), 0);
    EXPECT_TRUE(number.isSpecified());
    EXPECT_EQ(number.get(), 7);
    QelOptionalProperty<std::string> text;
    EXPECT_EQ(readOptionalProperty(*tree, text, element), 0);
    EXPECT_EQ(text, specified<std::string>("7"));
}

TEST(QelOptionalFieldsTest, NonNumericValueLeavesPropertyUnspecified) {
    TestTree tree;
    tree->putValue(std::string("text"), element);
    auto number = specified(5);
    EXPECT_EQ(readOptionalProperty(*tree, number, element), 0);
    EXPECT_FALSE(number.isSpecified());
    EXPECT_EQ(number.get(), 5);
}

TEST(QelOptionalFieldsTest, MissingElementMakesPropertyUnspecified) {
    TestTree tree;
    auto text = specified<std::string>("old");
    EXPECT_EQ(readOptionalProperty(*tree, text, element), 0);
    EXPECT_FALSE(text.isSpecified());
    EXPECT_EQ(text.get(), "old");
    auto flag = specified(true);
    EXPECT_EQ(readOptionalProperty(*tree, flag, element), 0);
    EXPECT_FALSE(flag.isSpecified());
}

TEST(QelOptionalFieldsTest, UnspecifiedPropertyWritesNothing) {
    TestTree tree;
    auto text = specified<std::string>("old");
    text.specify(false);
    EXPECT_EQ(writeOptionalProperty(*tree, text, element), 0);
    EXPECT_EQ(writeOptionalProperty(*tree, QelOptionalProperty<int>(), element), 0);
    EXPECT_EQ(writeOptionalProperty(*tree, QelOptionalProperty<bool>(), element), 0);
    EXPECT_EQ(writeOptionalLongLong(*tree, QelOptionalProperty<long>(), element), 0);
    EXPECT_EQ(writeOptionalComplex(*tree, QelOptionalProperty<QelGUID>(), element), 0);
    EXPECT_EQ(countChildren(*tree), 0);
}

TEST(QelOptionalFieldsTest, SpecifiedPropertyWritesValue) {
    TestTree tree;
    EXPECT_EQ(writeOptionalProperty(*tree, specified<std::string>(""), element), 0);
    EXPECT_EQ(childValue(*tree, element), "");
    EXPECT_EQ(writeOptionalProperty(*tree, specified(-3), 1026), 0);
    EXPECT_EQ(childValue(*tree, 1026), "-3");
}

TEST(QelOptionalFieldsTest, WritesBoolAsZeroOrOne) {
    TestTree tree;
    EXPECT_EQ(writeOptionalProperty(*tree, specified(true), element), 0);
    EXPECT_EQ(childValue(*tree, element), "1");
    EXPECT_EQ(writeOptionalProperty(*tree, specified(false), 1026), 0);
    EXPECT_EQ(childValue(*tree, 1026), "0");
    QelOptionalProperty<bool> read;
    EXPECT_EQ(readOptionalProperty(*tree, read, element), 0);
    EXPECT_EQ(read, specified(true));
}

TEST(QelOptionalFieldsTest, LongNumbersKeepTheirSign) {
    TestTree tree;
    EXPECT_EQ(writeOptionalLongLong(*tree, specified(-5L), element), 0);
    EXPECT_EQ(childValue(*tree, element), "-5");
    QelOptionalProperty<long long> read;
    EXPECT_EQ(readOptionalLongLong(*tree, read, element), 0);
    EXPECT_EQ(read, specified(-5LL));
}

TEST(QelOptionalFieldsTest, LongReceivesLowBits) {
    constexpr long long large = 0x1234567890;
    TestTree tree;
    EXPECT_EQ(writeOptionalLongLong(*tree, specified(large), element), 0);
    QelOptionalProperty<long> read;
    EXPECT_EQ(readOptionalLongLong(*tree, read, element), 0);
    EXPECT_EQ(read, specified(static_cast<long>(large)));
}

TEST(QelOptionalFieldsTest, UnreadableLongBecomesUnspecifiedAndKeepsValue) {
    TestTree tree;
    tree->putValue(std::string("text"), element);
    auto number = specified(5L);
    EXPECT_EQ(readOptionalLongLong(*tree, number, element), 0);
    EXPECT_FALSE(number.isSpecified());
    EXPECT_EQ(number.get(), 5);
}

TEST(QelOptionalFieldsTest, ReadableRecordBecomesSpecified) {
    TestTree tree;
    EXPECT_EQ(writeOptionalComplex(*tree, specified(QelGUID(1, 2)), element), 0);
    QelOptionalProperty<QelGUID> read;
    EXPECT_EQ(readOptionalComplex(*tree, read, element), 0);
    EXPECT_EQ(read, specified(QelGUID(1, 2)));
}

TEST(QelOptionalFieldsTest, MissingOrUnreadableRecordBecomesUnspecified) {
    TestTree tree;
    auto read = specified(QelGUID(1, 2));
    EXPECT_EQ(readOptionalComplex(*tree, read, element), 0);
    EXPECT_FALSE(read.isSpecified());

    tree->putValue(std::string("no identifier"), element);
    read.specify(true);
    EXPECT_EQ(readOptionalComplex(*tree, read, element), 0);
    EXPECT_FALSE(read.isSpecified());
    EXPECT_EQ(read.get(), QelGUID(1, 2));
}

} // namespace
} // namespace Qel
