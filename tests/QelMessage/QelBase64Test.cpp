#include "QelMessage/QelBase64.h"

#include <random>

#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelBase64Test, MatchesTheTestVectorsOfRfc4648) {
    const std::pair<const char*, const char*> vectors[] = {{"", ""},
                                                           {"f", "Zg=="},
                                                           {"fo", "Zm8="},
                                                           {"foo", "Zm9v"},
                                                           {"foob", "Zm9vYg=="},
                                                           {"fooba", "Zm9vYmE="},
                                                           {"foobar", "Zm9vYmFy"}};
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(QelBase64::encode(bytes), text);
        std::string decoded = "old";
        EXPECT_TRUE(QelBase64::decode(text, decoded));
        EXPECT_EQ(decoded, bytes);
    }
}

TEST(QelBase64Test, ArbitraryBytesRoundTrip) {
    std::mt19937 random(1);
    for (std::size_t size = 0; size < 300; ++size) {
        std::string bytes(size, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        std::string decoded;
        ASSERT_TRUE(QelBase64::decode(QelBase64::encode(bytes), decoded)) << size;
        EXPECT_EQ(decoded, bytes);
    }
}

TEST(QelBase64Test, MalformedInputLeavesOutputUnchanged) {
    for (const char* const text : {"Z",     "Zg",       "Zg=",          "Zg===", "=",        "====",  "Zg==Zg==",
                                   "Zm9v=", "Zm9v====", "Zm9vZg==Zm9v", "Zm9\n", "Zm 9v",    " Zm9v", "Zm9v\n",
                                   "Zm9-",  "Zm9_",     "Z=9v",         "Zm=v",  "Zm9v!m9v", "Zh==",  "Zm9="}) {
        std::string decoded = "old";
        EXPECT_FALSE(QelBase64::decode(text, decoded)) << text;
        EXPECT_EQ(decoded, "old");
    }
}

TEST(QelBase64Test, DecodesInPlace) {
    std::string text = "Zm9v";
    EXPECT_TRUE(QelBase64::decode(text, text));
    EXPECT_EQ(text, "foo");
}

} // namespace
} // namespace Qel
