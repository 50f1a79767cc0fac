#include "QelFunctionalityCore/Network/QelInterfaceRate.h"

#include <limits>
#include <locale>

#include "QelFunctionalityCore/Network/NetworkRecordTest.h"

namespace Qel {

namespace {

using testing::ElementsAre;

QelInterfaceRate rateOf(unsigned rateClass, long long rate) {
    QelInterfaceRate made;
    made.rateClass = rateClass;
    made.rate = rate;
    return made;
}

/// Parses into a rate with class 7 and rate 9.
int parse(const std::string& text, QelInterfaceRate& rate) {
    rate = rateOf(7, 9);
    return rate.fromStringEx(text);
}

void expectParsed(const std::string& text, unsigned rateClass, long long rate) {
    QelInterfaceRate parsed;
    EXPECT_EQ(parse(text, parsed), 0) << text;
    EXPECT_EQ(parsed.rateClass, rateClass) << text;
    EXPECT_EQ(parsed.rate, rate) << text;
}

TEST(QelInterfaceRateTest, FormatsClassAndRate) {
    EXPECT_EQ(rateOf(3, 1024).toString(), "*:3:1024");
    EXPECT_EQ(rateOf(4294967295, -5).toString(), "*:4294967295:-5");
}

TEST(QelInterfaceRateTest, UnlimitedFormatsAsEmptyStringWhichIsRejected) {
    EXPECT_EQ(rateOf(3, 0).toString(), "");
    QelInterfaceRate parsed;
    EXPECT_EQ(parse("", parsed), 1);
    EXPECT_EQ(parsed.rateClass, 7U);
}

TEST(QelInterfaceRateTest, ParsesClassAndRate) {
    expectParsed("*:3:1024", 3, 1024);
    expectParsed("eth0:3:1024", 3, 1024);
    expectParsed("*:4294967295:-9223372036854775808", 4294967295, std::numeric_limits<long long>::min());
    expectParsed("*:3:1024:more", 3, 1024);
}

TEST(QelInterfaceRateTest, MissingRateIsUnchanged) {
    expectParsed("*:3", 3, 9);
    expectParsed("*:3 and so on", 3, 9);
    expectParsed("*:3:", 3, 9);
}

TEST(QelInterfaceRateTest, MalformedRateIsZeroAndExcessiveRateIsClamped) {
    expectParsed("*:3:fast", 3, 0);
    expectParsed("*:3:99999999999999999999", 3, std::numeric_limits<long long>::max());
}

TEST(QelInterfaceRateTest, RejectsMissingNameOrClass) {
    QelInterfaceRate parsed;
    for (const char* const text : {":3:5", "*", "*:", "*:x:5", "*:99999999999"})
        EXPECT_EQ(parse(text, parsed), 1) << text;
}

TEST(QelInterfaceRateTest, ParsesIndependentlyOfLocale) {
    struct Grouped : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouped));
    expectParsed("*:3:1.024", 3, 1);
    EXPECT_EQ(rateOf(3000, 1024).toString(), "*:3000:1024");
    std::locale::global(before);
}

TEST(QelInterfaceRateTest, ComparesClassBeforeRate) {
    EXPECT_EQ(rateOf(1, 9).compare(rateOf(2, 3)), -1);
    EXPECT_EQ(rateOf(2, 3).compare(rateOf(1, 9)), 1);
    EXPECT_EQ(rateOf(4294967295, 0).compare(rateOf(1, 0)), 1) << "classes are unsigned";
    EXPECT_EQ(rateOf(1, -1).compare(rateOf(1, 1)), -1) << "rates are signed";
    EXPECT_EQ(rateOf(1, 1).compare(rateOf(1, -1)), 1);
    EXPECT_EQ(rateOf(1, 1).compare(rateOf(1, 1)), 0);
}

using QelInterfaceRateRecordTest = NetworkRecordTest;

TEST_F(QelInterfaceRateRecordTest, AlwaysWritesClassAndRate) {
    EXPECT_EQ(roundTrip(rateOf(0, 0)).compare(rateOf(0, 0)), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1417, 1251));
    newElement();
    EXPECT_EQ(roundTrip(rateOf(4000000000, 1LL << 40)).compare(rateOf(4000000000, 1LL << 40)), 0);
}

TEST_F(QelInterfaceRateRecordTest, RequiresOnlyClass) {
    QelInterfaceRate rate = rateOf(7, 9);
    put(1251, "5");
    EXPECT_EQ(read(rate), -1);
    EXPECT_EQ(rate.rate, 9);
    newElement();
    put(1417, "3");
    put(1251, "fast");
    EXPECT_EQ(read(rate), 0);
    EXPECT_EQ(rate.compare(rateOf(3, 9)), 0);
}

} // namespace
} // namespace Qel
