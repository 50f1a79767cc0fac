#include "QelMessage/QelXmlText.h"

#include <gtest/gtest.h>

#include "support/RandomTree.h"

namespace Qel {
namespace {

TEST(QelXmlTextTest, AnyNameRoundTripsAsAnXmlName) {
    TestSupport::RandomTree random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::string name = random.name();
        const std::string encoded = QelXmlText::encodeName(name);
        EXPECT_EQ(QelXmlText::decodeName(encoded), name) << encoded;
        EXPECT_EQ(encoded.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._"),
                  std::string::npos)
            << encoded;
        EXPECT_EQ(encoded.find_first_of("0123456789-."), encoded.find_first_of("0123456789-.", 1)) << encoded;
    }
}

TEST(QelXmlTextTest, NamesThatResembleEscapesRoundTrip) {
    const std::string parts[] = {"_", "x", "4", "1", "F", "a", "\x01", "_x41_", "_x_"};
    for (const std::string& a : parts)
        for (const std::string& b : parts)
            for (const std::string& c : parts)
                for (const std::string& d : parts)
                    for (const std::string& e : parts) {
                        const std::string name = a + b + c + d + e;
                        ASSERT_EQ(QelXmlText::decodeName(QelXmlText::encodeName(name)), name);
                        ASSERT_EQ(QelXmlText::decodeName(QelXmlText::encodeReservedName(name)), name);
                        ASSERT_NE(QelXmlText::encodeReservedName(name), QelXmlText::encodeName("x" + name));
                    }
}

TEST(QelXmlTextTest, OrdinaryNamesAreNotEscaped) {
    for (const char* const name : {"name", "log_level", "max_xfer", "A.b-c_9", "_a"})
        EXPECT_EQ(QelXmlText::encodeName(name), name);
    EXPECT_EQ(QelXmlText::encodeName(""), "_x_");
    EXPECT_EQ(QelXmlText::encodeReservedName("xsi"), "_x78_si");
    EXPECT_EQ(QelXmlText::encodeReservedName("x"), "_x78_");
}

TEST(QelXmlTextTest, UnderscoreThatEscapesNothingIsKept) {
    EXPECT_EQ(QelXmlText::decodeName("a_xyz"), "a_xyz");
    EXPECT_EQ(QelXmlText::decodeName("_x4a_"), "_x4a_") << "digits must be upper-case";
    EXPECT_EQ(QelXmlText::decodeName("_x41"), "_x41");
}

TEST(QelXmlTextTest, NamespaceRoundTripsAsAUri) {
    TestSupport::RandomTree random(2);
    for (int i = 0; i < 20000; ++i) {
        const std::string name = random.name();
        std::string decoded = "old";
        EXPECT_EQ(QelXmlText::decodeNamespace(QelXmlText::encodeNamespace(name), decoded), !name.empty());
        EXPECT_EQ(decoded, name.empty() ? "old" : name);
    }
}

TEST(QelXmlTextTest, FindsBytesNotAllowedInXml) {
    const auto isFree = [](std::string_view text) { return QelXmlText::findForbidden(text) == text.size(); };
    for (const std::string_view text :
         {"", "a", "\t\n\r", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(isFree(text)) << text;
    for (const std::string_view text :
         {std::string_view("\0", 1), std::string_view("\x1F"), std::string_view("\x80"), std::string_view("\xC1\xBF"),
          std::string_view("\xC2"), std::string_view("\xC2\xC2"), std::string_view("\xE0\x9F\xBF"),
          std::string_view("\xED\xA0\x80"), std::string_view("\xEF\xBF\xBE"), std::string_view("\xEF\xBF\xBF"),
          std::string_view("\xF0\x8F\xBF\xBF"), std::string_view("\xF4\x90\x80\x80"),
          std::string_view("\xF5\x80\x80\x80"), std::string_view("\xE2\x82"), std::string_view("\xF0\x9F\x8C")})
        EXPECT_FALSE(isFree(text)) << text;
    EXPECT_EQ(QelXmlText::findForbidden("ab\x01"), 2U);
}

TEST(QelXmlTextTest, CarriageReturnIsNotPlain) {
    EXPECT_TRUE(QelXmlText::isPlain("a\n\t<&>"));
    EXPECT_FALSE(QelXmlText::isPlain("a\r"));
    EXPECT_FALSE(QelXmlText::isPlain("\x01"));
}

} // namespace
} // namespace Qel
