#include "qel/cli/Json.h"

#include <array>
#include <limits>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using Qel::Tool::Json;

std::string onOneLine(const Json& document) {
    std::ostringstream out;
    out << document;
    return out.str();
}

std::string indented(const Json& document) {
    std::ostringstream out;
    printJson(out, document);
    return out.str();
}

TEST(JsonTest, KeepsKeyOrderAndReplacesInvalidUtf8) {
    EXPECT_EQ(indented({{"z", "\xFF"}, {"a", "ü"}}), "{\n  \"z\": \"\xEF\xBF\xBD\",\n  \"a\": \"ü\"\n}\n");
}

TEST(JsonTest, EscapesControlCharacters) {
    const std::string value = "\x1B \x7F \u009B \u202E \u2066 \n ü";
    const std::string document = indented({{"key\u0085", value}});
    EXPECT_EQ(document, "{\n  \"key\\u0085\": \"\\u001b \\u007f \\u009b \\u202e \\u2066 \\n ü\"\n}\n");
    EXPECT_EQ(nlohmann::json::parse(document)["key\u0085"], value);
}

TEST(JsonTest, IndentsNestedValuesByTwoSpaces) {
    EXPECT_EQ(indented({{"list", Json::array({1, 2})}, {"none", Json::array()}}),
              "{\n  \"list\": [\n    1,\n    2\n  ],\n  \"none\": []\n}\n");
}

TEST(JsonTest, SingleLineDocumentHasNoSpaces) {
    EXPECT_EQ(onOneLine({{"a", Json::array({1, "b"})}, {"c", nullptr}, {"d", Json::object()}}),
              R"({"a":[1,"b"],"c":null,"d":{}})");
}

TEST(JsonTest, PrintsEachValueType) {
    enum Plain { first, second };
    EXPECT_EQ(onOneLine(Json()), "null");
    EXPECT_EQ(onOneLine(Json(true)), "true");
    EXPECT_EQ(onOneLine(Json(second)), "1");
    EXPECT_EQ(onOneLine(Json(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
    EXPECT_EQ(onOneLine(Json(std::numeric_limits<std::uint64_t>::max())), "18446744073709551615");
    EXPECT_EQ(onOneLine(Json(1.0)), "1.0");
    EXPECT_EQ(onOneLine(Json(0.1)), "0.1");
    EXPECT_EQ(onOneLine(Json(std::string_view("a\"\n"))), R"("a\"\n")");
    EXPECT_EQ(onOneLine(Json(std::array{1, 2})), "[1,2]");
    EXPECT_EQ(onOneLine(Json(std::vector<std::string>{"a", "b"})), R"(["a","b"])");
}

TEST(JsonTest, SubscriptAddsMemberOrReplacesIt) {
    Json json;
    json["b"] = 1;
    json["a"] = 2;
    json["b"] = "three";
    EXPECT_EQ(onOneLine(json), R"({"b":"three","a":2})");
}

TEST(JsonTest, MemberCanBeFilledInPlace) {
    Json json;
    Json& list = json["list"] = Json::array();
    list.push_back({{"a", 1}});
    EXPECT_EQ(onOneLine(json), R"({"list":[{"a":1}]})");
}

TEST(JsonTest, CopyIsIndependent) {
    Json json{{"a", 1}};
    const Json copy = json;
    json["a"] = 2;
    EXPECT_EQ(onOneLine(copy), R"({"a":1})");
}

} // namespace
