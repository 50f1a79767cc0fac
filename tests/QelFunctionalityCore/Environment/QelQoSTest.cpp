#include "QelFunctionalityCore/Environment/QelQoS.h"

#include <set>

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int identifier = 1010;
constexpr int hard = 1067;
constexpr int soft = 1066;

QelQoS limit(const std::string& id, long long hardLimit) {
    QelQoS made(id);
    made.hardLimit = hardLimit;
    return made;
}

QelQoS limit(const std::string& id, long long softLimit, long long hardLimit) {
    QelQoS made = limit(id, hardLimit);
    made.softLimit = softLimit;
    return made;
}

TEST(QelQoSTest, DefaultHasZeroHardLimitAndNoSoftLimit) {
    const QelQoS made("cpu");
    EXPECT_EQ(made.id, "cpu");
    EXPECT_EQ(made.hardLimit, 0);
    EXPECT_FALSE(made.softLimit.isSpecified());
}

TEST(QelQoSTest, UnlimitedIsLargestNumber) {
    EXPECT_EQ(QelQoS::unlimited, 9223372036854775807);
}

TEST(QelQoSTest, SetHoldsOneLimitPerIdentifier) {
    std::set<QelQoS> limits{limit("ram", 1)};
    EXPECT_FALSE(limits.insert(limit("ram", 2)).second);
    EXPECT_TRUE(limits.insert(limit("cpu", 1)).second);
    EXPECT_EQ(limits.begin()->id, "cpu");
}

TEST(QelQoSTest, CompareByIdFindsIdentifier) {
    EXPECT_TRUE(QelQoS::CompareById("ram")(limit("ram", 9)));
    EXPECT_FALSE(QelQoS::CompareById("ram")(limit("RAM", 9)));
}

TEST(QelQoSTest, WritesIdentifierHardLimitAndSpecifiedSoftLimit) {
    const TestMessage message;
    ASSERT_EQ(QelQoS::Writer()(message.cursor(), limit("ram", QelQoS::unlimited)), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(identifier, hard));
    EXPECT_EQ(childValue(message.cursor(), identifier), "ram");
    EXPECT_EQ(childValue(message.cursor(), hard), "9223372036854775807");

    const TestMessage both;
    ASSERT_EQ(both.cursor().putObj(limit("", -1, 0), 1476), 0);
    both.cursor().firstChild();
    EXPECT_THAT(childIDs(both.cursor()), ElementsAre(identifier, hard, soft));
    EXPECT_EQ(childValue(both.cursor(), soft), "-1");
    EXPECT_EQ(both.cursor().curType(), "");
}

TEST(QelQoSTest, SurvivesRoundTrip) {
    const TestMessage message;
    ASSERT_EQ(QelQoS::Writer()(message.cursor(), limit("ram", 1, 2)), 0);
    QelQoS read("x");
    ASSERT_EQ(QelQoS::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(read.compare(limit("ram", 1, 2)), 0);
    EXPECT_TRUE(read.softLimit.isSpecified());
}

TEST(QelQoSTest, IdentifierAndHardLimitAreRequired) {
    const TestMessage noIdentifier;
    noIdentifier.cursor().putValue(1, hard);
    QelQoS read;
    EXPECT_EQ(QelQoS::Reader()(noIdentifier.cursor(), read), -1);

    const TestMessage noHardLimit;
    noHardLimit.cursor().putValue(std::string("ram"), identifier);
    EXPECT_EQ(QelQoS::Reader()(noHardLimit.cursor(), read), -1);
    EXPECT_EQ(read.id, "ram");

    noHardLimit.cursor().putValue(std::string("much"), hard);
    EXPECT_EQ(QelQoS::Reader()(noHardLimit.cursor(), read), -1);
}

TEST(QelQoSTest, InvalidSoftLimitIsUnspecified) {
    const TestMessage message;
    ASSERT_EQ(QelQoS::Writer()(message.cursor(), limit("ram", 2)), 0);
    message.cursor().putValue(std::string("some"), soft);
    QelQoS read = limit("", 7, 7);
    EXPECT_EQ(QelQoS::Reader()(message.cursor(), read), 0);
    EXPECT_FALSE(read.softLimit.isSpecified());
}

TEST(QelQoSTest, StringContainsSoftAndHardLimitOrOnlyHardLimit) {
    EXPECT_EQ(limit("", 1, 2).toString(), "1:2");
    EXPECT_EQ(limit("", -2).toString(), "-2");
}

TEST(QelQoSTest, SingleNumberSetsBothLimitsWithoutSpecifyingSoftOne) {
    QelQoS parsed;
    ASSERT_EQ(parsed.fromString("5"), 0);
    EXPECT_EQ(parsed.hardLimit, 5);
    EXPECT_EQ(parsed.softLimit.get(), 5);
    EXPECT_FALSE(parsed.softLimit.isSpecified());
}

TEST(QelQoSTest, TwoNumbersAreSoftAndHardLimit) {
    QelQoS parsed;
    ASSERT_EQ(parsed.fromString("1:2"), 0);
    EXPECT_EQ(parsed.hardLimit, 2);
    EXPECT_EQ(parsed.softLimit.get(), 1);
    EXPECT_FALSE(parsed.softLimit.isSpecified());

    // Characters after a valid number are ignored.
    ASSERT_EQ(parsed.fromString("3:x"), 0);
    EXPECT_EQ(parsed.hardLimit, 3);
}

TEST(QelQoSTest, ParsingKeepsSoftLimitSpecified) {
    QelQoS parsed = limit("", 1, 1);
    ASSERT_EQ(parsed.fromString("3:4"), 0);
    EXPECT_EQ(parsed.toString(), "3:4");
}

TEST(QelQoSTest, StringWithoutNumberChangesNothing) {
    for (const char* const text : {"x", "", ":5", "  "}) {
        QelQoS parsed = limit("ram", 8, 9);
        EXPECT_EQ(parsed.fromString(text), -1) << text;
        EXPECT_EQ(parsed.compare(limit("ram", 8, 9)), 0) << text;
    }
}

TEST(QelQoSTest, ComparesIdentifierThenHardThenSoftLimit) {
    EXPECT_EQ(limit("a", 9).compare(limit("b", 1)), -1);
    EXPECT_EQ(limit("b", 1).compare(limit("a", 9)), 1);
    EXPECT_EQ(limit("a", 9, 1).compare(limit("a", 1, 2)), -1);
    EXPECT_EQ(limit("a", 1, 2).compare(limit("a", 9, 1)), 1);
    EXPECT_EQ(limit("a", 1, 5).compare(limit("a", 2, 5)), -1);
    EXPECT_EQ(limit("a", 2, 5).compare(limit("a", 1, 5)), 1);
    EXPECT_EQ(limit("a", 2, 5).compare(limit("a", 2, 5)), 0);
}

TEST(QelQoSTest, SoftLimitsAreComparedOnlyIfBothAreSpecified) {
    EXPECT_EQ(limit("a", 2, 5).compare(limit("a", 5)), 0);
    EXPECT_EQ(limit("a", 5).compare(limit("a", 2, 5)), 0);
}

} // namespace
} // namespace Qel
