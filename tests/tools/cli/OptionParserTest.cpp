#include "qel/cli/OptionParser.h"

#include <sstream>

#include <gmock/gmock.h>

namespace {

using namespace Qel::Tool;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

class OptionParserTest : public testing::Test {
protected:
    OptionParserTest() {
        options.add({.name = "flag", .letter = 'f', .help = "a flag"});
        options.add({.name = "text", .value = "TEXT", .help = "a text"});
        options.add({.name = "texts", .value = "TEXT", .kind = OptionKind::strings, .help = "texts"});
        options.add({.name = "words", .value = "A B", .kind = OptionKind::words, .help = "words"});
        options.add({.name = "count", .value = "N", .kind = OptionKind::integer, .byDefault = "3", .help = "a count"});
        options.add({.name = "rate", .value = "R", .kind = OptionKind::real, .byDefault = "0.5", .help = "a rate"});
    }

    std::optional<std::string> parse(const std::vector<std::string>& words) {
        invocation = {};
        OptionSet given;
        const auto error = parseWords(words, options, given);
        return error ? error : makeInvocation(given, options, invocation);
    }

    Options options;
    Invocation invocation;
};

TEST_F(OptionParserTest, ParsesOptionByKind) {
    EXPECT_EQ(parse({"-f", "--text", "a", "--count=-7", "--rate", "1e3"}), std::nullopt);
    EXPECT_TRUE(invocation.has("flag"));
    EXPECT_EQ(invocation.string("text"), "a");
    EXPECT_EQ(invocation.integer("count"), -7);
    EXPECT_EQ(invocation.real("rate"), 1000);
}

TEST_F(OptionParserTest, OmittedOptionHasDefault) {
    EXPECT_EQ(parse({}), std::nullopt);
    EXPECT_FALSE(invocation.has("flag"));
    EXPECT_FALSE(invocation.has("text"));
    EXPECT_EQ(invocation.integer("count"), 3);
    EXPECT_EQ(invocation.real("rate"), 0.5);
}

TEST_F(OptionParserTest, TextsHoldOneWordPerOccurrenceAndWordsHoldAllFollowingWords) {
    EXPECT_EQ(parse({"file", "--texts", "a", "other", "--texts=b", "--words", "c", "d"}), std::nullopt);
    EXPECT_THAT(invocation.strings("texts"), ElementsAre("a", "b"));
    EXPECT_THAT(invocation.strings("words"), ElementsAre("c", "d"));
    EXPECT_THAT(invocation.arguments, ElementsAre("file", "other"));
}

TEST_F(OptionParserTest, ErrorNamesOptionAndValue) {
    EXPECT_THAT(parse({"--count", "7x"}), Optional(std::string("the argument ('7x') for option 'count' is invalid")));
    EXPECT_THAT(parse({"--count", "2147483648"}), Optional(HasSubstr("is invalid")));
    EXPECT_THAT(parse({"--rate", "fast"}), Optional(HasSubstr("('fast') for option 'rate'")));
    EXPECT_THAT(parse({"--text", "a", "--text", "b"}),
                Optional(std::string("option 'text' cannot be specified more than once")));
    EXPECT_THAT(parse({"--text"}), Optional(std::string("the required argument for option '--text' is missing")));
}

TEST_F(OptionParserTest, RequiredOptionMayBeOmittedOnlyWithHelp) {
    options.add({.name = "must", .value = "X", .isRequired = true, .help = "required"});
    options.add({.name = "help", .help = "help"});
    EXPECT_THAT(parse({}), Optional(std::string("the option 'must' is required but missing")));
    EXPECT_EQ(parse({"--help"}), std::nullopt);
}

TEST_F(OptionParserTest, HelpShowsValueNamesAndDefaults) {
    std::ostringstream out;
    printOptions(out, options);
    EXPECT_THAT(out.str(), testing::AllOf(HasSubstr("  -f [ --flag ]"), HasSubstr("  --text TEXT "),
                                          HasSubstr("  --words A B "), HasSubstr("  --count N (=3) ")));
}

TEST_F(OptionParserTest, FindsOptionByNameOrShortForm) {
    ASSERT_NE(options.find("flag"), nullptr);
    EXPECT_EQ(options.find("-f"), options.find("flag"));
    EXPECT_EQ(options.find("f"), nullptr);
    EXPECT_EQ(options.find("fla"), nullptr);
}

} // namespace
