#include "QelCore/QelContainers.h"

#include <cstring>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Qel {
namespace {

using Name = limited_length_string<16, char>;

const std::string fifteen = "abcdefghijklmno";
const std::string sixteen = fifteen + 'p';

std::string bytesOf(const Name& name) {
    return {name.c_str(), sizeof name};
}

std::string padded(std::string bytes) {
    bytes.resize(sizeof(Name));
    return bytes;
}

TEST(LimitedLengthStringTest, IsInitiallyUnsetAndZero) {
    const Name name;
    EXPECT_FALSE(name.isSpecified());
    EXPECT_EQ(name.length(), 0U);
    EXPECT_STREQ(name.c_str(), "");
    EXPECT_EQ(bytesOf(name), padded(""));
}

TEST(LimitedLengthStringTest, HoldsUpToSizeMinusOneCharacters) {
    Name name;
    name = fifteen.c_str();
    EXPECT_EQ(name.c_str(), fifteen);
    EXPECT_EQ(name.length(), 15U);
    EXPECT_EQ(Name(fifteen).c_str(), fifteen);
    EXPECT_EQ(bytesOf(name), padded(fifteen));
}

TEST(LimitedLengthStringDeathTest, LongerStringTerminatesTheProcess) {
    Name name;
    EXPECT_DEATH(name = sixteen.c_str(), "core/src/QelCore/QelContainers:93");
    EXPECT_DEATH(name = sixteen, "core/src/QelCore/QelContainers:108");
    EXPECT_DEATH(static_cast<void>(Name(sixteen.c_str())), "QelContainers:93");
    EXPECT_DEATH(static_cast<void>(Name(sixteen)), "QelContainers:108");
}

TEST(LimitedLengthStringTest, SecondByteMarksSpecifiedEmptyString) {
    EXPECT_TRUE(Name("").isSpecified());
    EXPECT_EQ(bytesOf(Name("")), padded(std::string("\0\1", 2)));
    EXPECT_EQ(bytesOf(Name(std::string())), padded(std::string("\0\1", 2)));
    EXPECT_EQ(Name("").length(), 0U);
}

TEST(LimitedLengthStringTest, NullPointerUnsetsAndClearsIt) {
    Name name("abc");
    name = nullptr;
    EXPECT_FALSE(name.isSpecified());
    EXPECT_EQ(bytesOf(name), padded(""));
}

TEST(LimitedLengthStringTest, AssignmentClearsTheOldCharacters) {
    Name name(fifteen);
    name = "x";
    EXPECT_EQ(bytesOf(name), padded("x"));
    name = fifteen;
    name = std::string("y");
    EXPECT_EQ(bytesOf(name), padded("y"));
    name = fifteen;
    name = "";
    EXPECT_EQ(bytesOf(name), padded(std::string("\0\1", 2)));
}

TEST(LimitedLengthStringTest, CanBeAssignedFromItsOwnCharacters) {
    limited_length_string<16> text("abcdef");
    text = text.c_str();
    EXPECT_EQ(text, "abcdef");
    text = text.c_str() + 2;
    EXPECT_EQ(text, "cdef");
    text = text.c_str() + text.length();
    EXPECT_TRUE(text.isSpecified());
    EXPECT_EQ(text, "");
}

TEST(LimitedLengthStringTest, CopiesCharactersUpToEmbeddedZero) {
    const Name name(std::string("ab\0\1and more than fits", 22));
    EXPECT_EQ(bytesOf(name), padded("ab"));
}

TEST(LimitedLengthStringTest, SpecifyConvertsBetweenUnsetAndEmpty) {
    Name name;
    name.specify(true);
    EXPECT_TRUE(name.isSpecified());
    EXPECT_EQ(name, Name(""));
    name.specify(false);
    EXPECT_FALSE(name.isSpecified());
    EXPECT_EQ(bytesOf(name), padded(""));
}

TEST(LimitedLengthStringTest, SpecifyLeavesNonEmptyStringUnchanged) {
    Name name("a");
    name.specify(false);
    EXPECT_TRUE(name.isSpecified());
    EXPECT_EQ(name, Name("a"));
    name.specify(true);
    EXPECT_EQ(bytesOf(name), padded("a"));
}

TEST(LimitedLengthStringTest, UnsetComparesBeforeEverySpecifiedString) {
    EXPECT_EQ(Name().compare(Name()), 0);
    EXPECT_EQ(Name().compare(Name("")), -1);
    EXPECT_EQ(Name("").compare(Name()), 1);
    EXPECT_EQ(Name("a").compare(Name()), 1);
    EXPECT_EQ(Name().compare(Name("a")), -1);
    EXPECT_EQ(Name("").compare(Name("")), 0);
}

TEST(LimitedLengthStringTest, NullPointerComparesAsUnset) {
    const char* const null = nullptr;
    EXPECT_EQ(Name().compare(null), 0);
    EXPECT_EQ(Name("").compare(null), 1);
    EXPECT_EQ(Name().compare(""), -1);
    EXPECT_EQ(Name("").compare(""), 0);
    EXPECT_TRUE(Name() == null);
    EXPECT_FALSE(Name("") == null);
}

TEST(LimitedLengthStringTest, ComparesUnsignedCharacters) {
    EXPECT_EQ(Name("a").compare(Name("b")), -1);
    EXPECT_EQ(Name("z").compare(Name("b")), 1);
    EXPECT_EQ(Name("ab").compare(Name("a")), 1);
    EXPECT_EQ(Name("").compare(Name("a")), -1);
    EXPECT_EQ(Name("a").compare(Name("\xff")), -1);
    EXPECT_EQ(Name("a").compare("z"), -1);
    EXPECT_EQ(Name("z").compare("a"), 1);
}

TEST(LimitedLengthStringTest, OperatorsAgreeWithCompare) {
    EXPECT_TRUE(Name() < Name(""));
    EXPECT_TRUE(Name("") < Name("a"));
    EXPECT_FALSE(Name("a") < Name("a"));
    EXPECT_TRUE(Name("a") == Name("a"));
    EXPECT_TRUE(Name("a") != Name("b"));
    EXPECT_FALSE(Name() == Name(""));
}

TEST(LimitedLengthStringTest, ComparesWithStdString) {
    EXPECT_TRUE(Name("a") == std::string("a"));
    EXPECT_TRUE(std::string("a") == Name("a"));
    EXPECT_TRUE(Name("a") == "a");
    const std::string empty;
    EXPECT_NE(Name(), empty);
    EXPECT_LT(Name(), empty);
    EXPECT_TRUE(Name("a") < std::string("b"));
    EXPECT_TRUE(std::string("a") < Name("b"));
    EXPECT_TRUE(Name("a") < "b");
    EXPECT_FALSE(Name("b") < sixteen);
}

TEST(LimitedLengthStringTest, LengthIsBoundedByArrayWithoutZero) {
    Name name;
    std::memset(static_cast<void*>(&name), 'x', sizeof name);
    EXPECT_EQ(name.length(), sizeof name);
    EXPECT_EQ(name.compare(Name("x")), 1);
}

TEST(LimitedLengthStringTest, WorksAsMapKey) {
    const std::map<Name, int> values = {{"vm", 1}, {"", 2}, {Name(), 3}};
    EXPECT_EQ(values.at("vm"), 1);
    EXPECT_EQ(values.at(""), 2);
    EXPECT_EQ(values.at(Name()), 3);
}

TEST(ScalarPairTest, RowsOfConstantTableInitialiseMap) {
    using ByNumber = std::map<int, std::string>;
    constexpr scalarPair<ByNumber> rows[] = {{1, "one"}, {2, "two"}};
    const ByNumber names(std::begin(rows), std::end(rows));
    EXPECT_THAT(names, testing::ElementsAre(testing::Pair(1, "one"), testing::Pair(2, "two")));

    using ByName = std::map<std::string, int>;
    constexpr scalarPair<ByName> inverse[] = {{"one", 1}, {"two", 2}};
    EXPECT_EQ(ByName(std::begin(inverse), std::end(inverse)).at("two"), 2);
}

TEST(ScalarPairTest, ConvertsToMapValueType) {
    using Map = std::map<int, long>;
    const Map::value_type value = scalarPair<Map>{1, 2};
    EXPECT_EQ(value, Map::value_type(1, 2));
}

} // namespace
} // namespace Qel
