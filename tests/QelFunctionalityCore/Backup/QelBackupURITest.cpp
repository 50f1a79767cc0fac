#include "QelFunctionalityCore/Backup/QelBackupURI.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Backup/SampleLocation.h"
#include "QelMessage/QelLimits.h"
#include "support/LogCapture.h"
#include "support/TestMessage.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

/// Parses without logging: thousands of the URIs in these tests are invalid, and each is logged as an error.
QelBackupURI parsed(const std::string& path) {
    const LogCapture log(LogLevel::error);
    return QelBackupURI("backup://" + path);
}

/// The path of the URI, or "(none)".
std::string pathOf(const QelBackupURI& name) {
    QelURI uri;
    if (name.uri(uri) != 0)
        return "(none)";
    EXPECT_EQ(uri.getUriType(), "backup");
    return uri.getUriPath();
}

/// The encoded vault as it appears in a URI, without the "&".
std::string vaultHex() {
    QelBackupURI name("a/b", "");
    name.storage(vault());
    const std::string path = pathOf(name);
    return path.substr(0, path.find('&'));
}

std::string hexadecimal(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
        static constexpr const char* digits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

void expectNames(const QelBackupURI& name, const std::string& backup, const std::string& subPath) {
    EXPECT_TRUE(name.isValid());
    EXPECT_EQ(name.backup(), backup);
    EXPECT_EQ(name.subPath(), subPath);
    EXPECT_FALSE(name.storage().isSpecified());
}

void expectNothing(const QelBackupURI& name) {
    EXPECT_FALSE(name.isValid());
    EXPECT_THAT(name.backup(), IsEmpty());
    EXPECT_THAT(name.subPath(), IsEmpty());
    EXPECT_FALSE(name.storage().isSpecified());
}

void expectVault(const QelBackupURI& name) {
    EXPECT_TRUE(name.isValid());
    EXPECT_EQ(name.backup(), "a/b");
    EXPECT_EQ(name.subPath(), "c");
    ASSERT_TRUE(name.storage().isSpecified());
    const QelDSLocation& location = name.storage().get();
    EXPECT_EQ(location.type, 2);
    EXPECT_EQ(location.path, "/vault");
    EXPECT_EQ(location.authName.name.get(), "keeper");
    EXPECT_EQ(location.password, "secret");
}

TEST(QelBackupURITest, BackupContainsOneSlash) {
    expectNames(parsed("a/b/c"), "a/b", "c");
    expectNames(parsed("a/b/c/d"), "a/b", "c/d");
}

TEST(QelBackupURITest, UriWithoutSubPathEndsWithSlash) {
    expectNames(parsed("a/b"), "a/b", "");
    expectNames(parsed("a/b/"), "a/b", "");
    EXPECT_EQ(pathOf(parsed("a/b")), "a/b/");
}

TEST(QelBackupURITest, PathWithoutSlashIsInvalid) {
    expectNothing(parsed("abc"));
    expectNothing(parsed(""));
    expectNothing(parsed("a\\b"));
}

TEST(QelBackupURITest, BackslashEndsBackupOnlyAfterFirstSlash) {
    expectNames(parsed("a/b\\c"), "a/b", "c");
    EXPECT_EQ(pathOf(parsed("a/b\\c")), "a/b/c");
    expectNames(parsed("a\\b/c"), "a\\b/c", "");
    expectNames(parsed("a/b/c\\d"), "a/b", "c\\d");
}

TEST(QelBackupURITest, TrailingSlashBelongsToBackup) {
    expectNames(parsed("abc/"), "abc/", "");
    expectNames(parsed("/"), "/", "");
    expectNames(parsed("//c"), "/", "c");
}

TEST(QelBackupURITest, AmpersandAfterFirstSlashIsOrdinary) {
    expectNames(parsed("a/b&c/d"), "a/b&c", "d");
}

TEST(QelBackupURITest, OtherStringsAreInvalid) {
    for (const char* const text : {"file://a/b/c", "Backup://a/b/c", "backups://a/b/c", "backu://a/b/c", "a/b/c", "",
                                   "backup:/a/b/c", "://a/b/c"})
        expectNothing(QelBackupURI(text));
}

TEST(QelBackupURITest, InvalidObjectHasNoUri) {
    QelURI uri;
    uri.setUri("file://kept");
    EXPECT_EQ(QelBackupURI().uri(uri), 1);
    EXPECT_EQ(QelBackupURI("", "c").uri(uri), 1);
    EXPECT_EQ(uri.getUri(), "file://kept");
}

TEST(QelBackupURITest, StorageSurvivesRoundTrip) {
    QelBackupURI name("a/b", "c");
    name.storage(vault());
    QelURI uri;
    ASSERT_EQ(name.uri(uri), 0);
    EXPECT_THAT(uri.getUri(), EndsWith("&a/b/c"));
    expectVault(QelBackupURI(uri.getUri()));
}

TEST(QelBackupURITest, StorageIsLowerCaseHexadecimal) {
    EXPECT_THAT(vaultHex(), testing::MatchesRegex("([0-9a-f][0-9a-f])+"));
    EXPECT_THAT(vaultHex(), StartsWith("ab51454c")) << "a message in binary form";
    std::string upper = vaultHex();
    for (char& c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    expectVault(parsed(upper + "&a/b/c"));
}

TEST(QelBackupURITest, BackupAfterStorageMayContainAmpersand) {
    const QelBackupURI name = parsed(vaultHex() + "&a&b/c/d");
    EXPECT_EQ(name.backup(), "a&b/c");
    EXPECT_EQ(name.subPath(), "d");
}

TEST(QelBackupURITest, StorageWithoutBackupIsDiscarded) {
    expectNothing(parsed(vaultHex() + "&"));
    expectNothing(parsed(vaultHex() + "&a"));
    expectNothing(parsed(vaultHex() + "&a\\b"));
}

TEST(QelBackupURITest, SingleLastDigitIsAByte) {
    std::string text = vaultHex();
    ASSERT_THAT(text, EndsWith("00"));
    text.pop_back();
    expectVault(parsed(text + "&a/b/c"));
}

TEST(QelBackupURITest, PairMayContainSignOrBlank) {
    std::string text = vaultHex();
    const std::size_t version = 8;
    ASSERT_EQ(text.substr(version, 2), "01");
    text[version] = '+';
    text[text.size() - 2] = ' ';
    expectVault(parsed(text + "&a/b/c"));
}

TEST(QelBackupURITest, DecodingStopsAtPairThatIsNotANumber) {
    expectVault(parsed(vaultHex() + "zz" + vaultHex() + "&a/b/c"));
    expectVault(parsed(vaultHex() + "    &a/b/c"));
    expectVault(parsed(vaultHex() + std::string(1, '\0') + "&a/b/c"));
}

TEST(QelBackupURITest, InvalidPairInMiddleTruncatesStorage) {
    std::string text = vaultHex();
    text.replace(text.size() / 2 / 2 * 2, 2, "zz");
    expectNothing(parsed(text + "&a/b/c"));
}

TEST(QelBackupURITest, RejectsTruncatedStorage) {
    const std::string text = vaultHex();
    for (std::size_t length = 0; length < text.size() - 1; ++length)
        expectNothing(parsed(text.substr(0, length) + "&a/b/c"));
}

TEST(QelBackupURITest, RejectsAlteredStorage) {
    const std::string text = vaultHex();
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string altered = text;
        altered[at] = altered[at] == '0' ? '1' : '0';
        expectNothing(parsed(altered + "&a/b/c"));
    }
}

TEST(QelBackupURITest, RejectsMegabytesOfRepeatedInput) {
    constexpr std::size_t megabyte = std::size_t{1} << 20;
    for (const char* const piece : {"&", "/&", "0", "f", " ", "zz", "\t1", "ab51454c"}) {
        std::string text;
        while (text.size() < megabyte)
            text += piece;
        for (const char* const rest : {"", "&a/b/c"})
            EXPECT_FALSE(parsed(text + rest).storage().isSpecified()) << piece << rest;
    }
    expectNothing(parsed(std::string(megabyte, '&')));
    expectNothing(parsed(std::string(megabyte, '&') + "a/b/c"));
    EXPECT_EQ(parsed(std::string(megabyte, '/')).subPath().size(), megabyte - 2);
    // The blanks are scanned once, not once per pair.
    expectNothing(parsed(std::string(megabyte, ' ') + "41&a/b/c"));
}

/// The log lines written while a URI is parsed, each prefixed by its function.
std::vector<std::string> logOf(const std::string& path) {
    const LogCapture log(LogLevel::error);
    (void)QelBackupURI("backup://" + path);
    std::vector<std::string> texts;
    for (const LogCapture::Line& line : log.lines()) {
        EXPECT_EQ(line.file, "core/src/QelFunctionalityCore/QelBackupMBase");
        EXPECT_EQ(line.level, 1);
        texts.push_back(line.function + ": " + line.text);
    }
    return texts;
}

TEST(QelBackupURITest, LogNamesFailedStepWithoutSecret) {
    const std::string text = vaultHex();
    EXPECT_THAT(logOf(text.substr(0, text.size() - 4) + "&a/b/c"), ElementsAre("decode: decode binary"));
    EXPECT_THAT(logOf("&a/b/c"), ElementsAre("decode: decode binary"));
    EXPECT_THAT(logOf(hexadecimal(binaryOf(*TestMessage().get())) + "&a/b/c"), ElementsAre("decode: parse object"));
    EXPECT_THAT(logOf(text + "&a"), IsEmpty());
    EXPECT_THAT(logOf("abc"), IsEmpty());
}

TEST(QelBackupURITest, MessageOfAnotherRecordIsNotAStorage) {
    const TestMessage message;
    message.cursor().putValue("/vault", 1156); // neither a type nor base64
    expectNothing(parsed(hexadecimal(binaryOf(*message.get())) + "&a/b/c"));
}

TEST(QelBackupURITest, StorageAboveMessageLimitHasNoUri) {
    QelDSLocation location = vault();
    location.password.assign(QelLimits::messageBytes, 'x');
    QelBackupURI name("a/b", "c");
    name.storage(location);
    const LogCapture log(LogLevel::error);
    QelURI uri;
    EXPECT_EQ(name.uri(uri), 1);
    EXPECT_THAT(uri.getUri(), IsEmpty());
    EXPECT_THAT(log.messages(), ElementsAre("1 encode message"));
}

} // namespace

} // namespace Qel
