#include "QelFunctionalityCore/Files/QelURI.h"

#include <gtest/gtest.h>

namespace Qel {
namespace {

QelURI uriOf(const std::string& text) {
    QelURI uri;
    uri.setUri(text);
    return uri;
}

void expectInvalid(const std::string& text) {
    const QelURI uri = uriOf(text);
    EXPECT_FALSE(uri.isValid()) << text;
    EXPECT_EQ(uri.getUriType(), "") << text;
    EXPECT_EQ(uri.getUriPath(), "") << text;
    EXPECT_EQ(uri.getUri(), "") << text;
}

TEST(QelURITest, DefaultIsInvalid) {
    EXPECT_FALSE(QelURI().isValid());
    EXPECT_EQ(QelURI().getUri(), "");
}

TEST(QelURITest, StringIsSplitAtFirstSeparator) {
    const QelURI uri = uriOf("backup://a://b/c");
    EXPECT_TRUE(uri.isValid());
    EXPECT_EQ(uri.getUriType(), "backup");
    EXPECT_EQ(uri.getUriPath(), "a://b/c");
    EXPECT_EQ(uri.getUri(), "backup://a://b/c");
}

TEST(QelURITest, PathMayBeEmpty) {
    const QelURI uri = uriOf("ab://");
    EXPECT_TRUE(uri.isValid());
    EXPECT_EQ(uri.getUriPath(), "");
    EXPECT_EQ(uri.getUri(), "ab://");
}

TEST(QelURITest, SingleLetterIsDriveAndNotType) {
    expectInvalid("C://folder");
    expectInvalid("C:/folder");
}

TEST(QelURITest, StringWithoutTypeMakesBothPartsEmpty) {
    for (const char* const text : {"", "://", "://path", "path", "type:/path", "type:path", "type//:path"})
        expectInvalid(text);
}

TEST(QelURITest, InvalidStringClearsPreviousValue) {
    QelURI uri = uriOf("backup://a");
    uri.setUri("nothing");
    EXPECT_FALSE(uri.isValid());
    EXPECT_EQ(uri.getUriPath(), "");
}

TEST(QelURITest, PathWithoutTypeIsInvalid) {
    QelURI uri;
    uri.setUriPath("a/b");
    EXPECT_FALSE(uri.isValid());
    EXPECT_EQ(uri.getUri(), "");
    uri.setUriType("x");
    EXPECT_TRUE(uri.isValid()) << "only setUri() checks the length of the type";
    EXPECT_EQ(uri.getUri(), "x://a/b");
}

} // namespace
} // namespace Qel
