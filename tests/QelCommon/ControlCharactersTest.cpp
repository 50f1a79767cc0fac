#include "QelCommon/ControlCharacters.h"

#include <gmock/gmock.h>

#include "QelCommon/Utf8.h"

namespace Qel {

namespace {

TEST(ControlCharactersTest, KeepsPrintableCharacters) {
    for (const char* const text : {"", "plain ~", "Größe", "日本語", "\xF0\x9F\x98\x80", "\xC2\xA0", "back\\slash"})
        EXPECT_EQ(showControls(text), text);
}

TEST(ControlCharactersTest, EscapesAsciiControls) {
    EXPECT_EQ(showControls(std::string("a\0b\x1B[31m\r\x7F", 10)), "a\\x00b\\x1b[31m\\x0d\\x7f");
    EXPECT_EQ(showControls("a\nb\tc"), "a\\nb\\tc");
}

TEST(ControlCharactersTest, EscapesC1Controls) {
    EXPECT_EQ(showControls("\xC2\x80 \xC2\x9B\x33m \xC2\x9F"), "\\xc2\\x80 \\xc2\\x9b3m \\xc2\\x9f");
}

TEST(ControlCharactersTest, EscapesBidiControlsAndSeparators) {
    EXPECT_EQ(showControls("\u061C"), "\\xd8\\x9c");
    EXPECT_EQ(showControls("\u200E\u200F"), "\\xe2\\x80\\x8e\\xe2\\x80\\x8f");
    EXPECT_EQ(showControls("\u2028\u2029"), "\\xe2\\x80\\xa8\\xe2\\x80\\xa9");
    EXPECT_EQ(showControls("\u202A\u202E"), "\\xe2\\x80\\xaa\\xe2\\x80\\xae");
    EXPECT_EQ(showControls("\u2066\u2069"), "\\xe2\\x81\\xa6\\xe2\\x81\\xa9");
    // Adjacent code points are kept.
    for (const char* const text : {"\u061B", "\u061D", "\u200D", "\u2010", "\u2027", "\u202F", "\u2065", "\u206A"})
        EXPECT_EQ(showControls(text), text);
}

TEST(ControlCharactersTest, EscapesMalformedUtf8) {
    EXPECT_EQ(showControls("\x9B[2J"), "\\x9b[2J");
    EXPECT_EQ(showControls("a\xC3"), "a\\xc3");
    EXPECT_EQ(showControls("\xC3 b"), "\\xc3 b");
    EXPECT_EQ(showControls("\xC0\x9B"), "\\xc0\\x9b") << "an overlong form";
    EXPECT_EQ(showControls("\xE0\x82\x9B"), "\\xe0\\x82\\x9b") << "an overlong form";
    EXPECT_EQ(showControls("\xED\xA0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
    EXPECT_EQ(showControls("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond U+10FFFF";
}

TEST(ControlCharactersTest, KeepsRequestedCharacters) {
    EXPECT_EQ(showControls("a\nb\tc\x1B", "\n\t"), "a\nb\tc\\x1b");
}

TEST(ControlCharactersTest, IsIdempotent) {
    const std::string once = showControls("\x1B\u202E\xFF");
    EXPECT_EQ(showControls(once), once);
}

TEST(Utf8Test, DecodesCharactersOfEachLength) {
    const std::pair<const char*, Utf8Character> characters[] = {
        {"A", {1, 0x41}},        {"\u0080", {2, 0x80}},        {"\u07FF.", {2, 0x7FF}},      {"\u0800", {3, 0x800}},
        {"\uFFFF", {3, 0xFFFF}}, {"\U00010000", {4, 0x10000}}, {"\U0010FFFF", {4, 0x10FFFF}}};
    for (const auto& [text, expected] : characters) {
        EXPECT_EQ(firstUtf8Character(text).length, expected.length);
        EXPECT_EQ(firstUtf8Character(text).code, expected.code);
    }
}

TEST(Utf8Test, MalformedBytesHaveLengthZero) {
    for (const std::string_view bytes :
         {"\x80", "\xC0\xAF", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x80\xAF", "\xE2\x82", "\xE2\x28\xA1", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xF0\x80\x80\xAF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
        EXPECT_EQ(firstUtf8Character(bytes).length, 0U) << showControls(bytes);
}

} // namespace
} // namespace Qel
