#include "QelMessage/QelBinary.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelMessageIterator.h"
#include "support/TestMessage.h"
#include "support/TreeComparer.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using TestSupport::describe;
using TestSupport::TestMessage;

constexpr int nameId = 1026;
constexpr int environmentId = 1624;

/// A temporary directory that is removed after the test.
class Directory {
public:
    Directory() {
        std::string name = testing::TempDir() + "qel-XXXXXX";
        m_path = ::mkdtemp(name.data());
    }
    ~Directory() { std::filesystem::remove_all(m_path); }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const { return m_path / name; }
    [[nodiscard]] std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(m_path), std::filesystem::directory_iterator());
    }

private:
    std::filesystem::path m_path;
};

void write(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}
std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A message with an envelope and some elements; its cursor is at the root.
class Sample : public TestMessage {
public:
    Sample() {
        get()->setTime(1795167000);
        get()->setRequestId("r");
        get()->setSenderEID("2cf8e6a4-0000-0000-0000-000000000001");
        get()->setSession("s");
        get()->setOrigin("o");
        get()->addSubscription("events_subscription");
        cursor().newChild(environmentId);
        cursor().setComplexType(292, 122);
        cursor().putValue(std::string("x"), nameId);
        cursor().putChild("log_level");
        cursor().seekRoot();
    }
};

// --------------------------------------------------------------------------------------------------- the envelope

TEST(QelBinaryTest, EnvelopeIsInitiallyUnset) {
    const TestMessage message;
    long time = 7;
    std::string text = "old";
    EXPECT_NE(message->getTime(&time), 0);
    EXPECT_NE(message->getRequestId(text), 0);
    EXPECT_NE(message->getSession(text), 0);
    EXPECT_NE(message->getOrigin(text), 0);
    EXPECT_EQ(message->getSenderEID(), "");
    EXPECT_THAT(message->getSubscriptions(), IsEmpty());
    EXPECT_EQ(time, 7);
    EXPECT_EQ(text, "old");
}

TEST(QelBinaryTest, EnvelopeStoresEachField) {
    const Sample message;
    long time = 0;
    std::string text;
    EXPECT_EQ(message->getTime(&time), 0);
    EXPECT_EQ(time, 1795167000);
    EXPECT_EQ(message->getRequestId(text), 0);
    EXPECT_EQ(text, "r");
    EXPECT_EQ(message->getSession(text), 0);
    EXPECT_EQ(text, "s");
    EXPECT_EQ(message->getOrigin(text), 0);
    EXPECT_EQ(text, "o");
    EXPECT_EQ(message->getSenderEID(), "2cf8e6a4-0000-0000-0000-000000000001");
    EXPECT_EQ(message.cursor().getOrigin(text), 0);
    EXPECT_NE(message->getTime(nullptr), 0);
}

TEST(QelBinaryTest, EmptyStringUnsetsAField) {
    const Sample message;
    message->setRequestId("");
    message->setSession("");
    message->setOrigin("");
    std::string text = "old";
    EXPECT_NE(message->getRequestId(text), 0);
    EXPECT_NE(message->getSession(text), 0);
    EXPECT_NE(message->getOrigin(text), 0);
    EXPECT_NE(message.cursor().getOrigin(text), 0);
    EXPECT_EQ(text, "old");
}

TEST(QelBinaryTest, SubscriptionsKeepTheirOrder) {
    const TestMessage message;
    EXPECT_EQ(message->addSubscription("b"), 0);
    EXPECT_EQ(message->addSubscription("a"), 0);
    EXPECT_NE(message->addSubscription(""), 0);
    EXPECT_NE(message->addSubscription("a b"), 0);
    EXPECT_NE(message->addSubscription("a\n"), 0);
    EXPECT_NE(message->addSubscription(nullptr), 0);
    EXPECT_THAT(message->getSubscriptions(), ElementsAre("b", "a"));
}

// ------------------------------------------------------------------------------------------------ whole messages

TEST(QelBinaryTest, CreateInitialisesAnEmptyMessage) {
    const Sample message;
    EXPECT_NE(message->create(1), 0);
    EXPECT_EQ(message.cursor().seekPresence(environmentId), 0);
    EXPECT_EQ(message->create(0), 0);
    EXPECT_THAT(describe(*message.get()), ElementsAre("/ {} <:> = ''"));
    EXPECT_THAT(message->getSubscriptions(), IsEmpty());
}

TEST(QelBinaryTest, RootIteratorReturnsANewCursorAtTheRoot) {
    const Sample message;
    const auto cursor = message.root();
    EXPECT_EQ(cursor->curName(), "/");
    EXPECT_EQ(cursor->getMessage(), message.get());
}

TEST(QelBinaryTest, CopyHasItsOwnTree) {
    const Sample message;
    const TestMessage with(message->copy(true));
    const TestMessage without(message->copy(false));
    EXPECT_EQ(TestSupport::binaryOf(*with.get()), TestSupport::binaryOf(*message.get()));
    EXPECT_EQ(describe(*without.get()), describe(*message.get()));
    EXPECT_THAT(without->getSubscriptions(), IsEmpty());
    message.cursor().deleteChild(environmentId);
    EXPECT_EQ(with.cursor().seekPresence(environmentId), 0);
}

TEST(QelBinaryTest, BinaryFormRoundTrips) {
    const Sample message;
    const std::string bytes = TestSupport::binaryOf(*message.get());
    const TestMessage copy;
    ASSERT_EQ(copy->fromBinary(bytes.data(), static_cast<int>(bytes.size())), 0);
    EXPECT_EQ(TestSupport::textOf(*copy.get()), TestSupport::textOf(*message.get()));
}

TEST(QelBinaryTest, TextFormRoundTrips) {
    const Sample message;
    const std::string text = TestSupport::textOf(*message.get());
    const TestMessage copy;
    ASSERT_EQ(copy->fromTextEx(text.c_str(), 40500), 0);
    EXPECT_EQ(TestSupport::binaryOf(*copy.get()), TestSupport::binaryOf(*message.get()));
    EXPECT_EQ(TestSupport::taken(message->toTextEx(0, "", 40500)), text);
}

TEST(QelBinaryTest, FailedReadLeavesMessageUnchanged) {
    const Sample message;
    const std::string before = TestSupport::binaryOf(*message.get());
    EXPECT_NE(message->fromTextEx("<message session='new'><name></message>", 0), 0);
    EXPECT_NE(message->fromTextEx(nullptr, 0), 0);
    EXPECT_NE(message->fromBinary("rubbish", 7), 0);
    EXPECT_NE(message->fromBinary(before.data(), static_cast<int>(before.size()) - 1), 0);
    EXPECT_NE(message->fromBinary(nullptr, 5), 0);
    EXPECT_NE(message->fromBinary("", -1), 0);
    EXPECT_EQ(TestSupport::binaryOf(*message.get()), before);
}

// ----------------------------------------------------------------------------------------- flattening, the factory

TEST(QelBinaryTest, FactoryCreatesEmptyMessages) {
    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    ASSERT_NE(message.get(), nullptr);
    EXPECT_EQ(message->create(0), 0);
    EXPECT_EQ(QelMessage::getFactory(), QelMessage::getFactory());
}

TEST(QelBinaryTest, MeasuringReturnsMinusTwoAndFlatteningZero) {
    const Sample message;
    ASSERT_EQ(message.cursor().seek(environmentId), 0);
    int size = 0;
    ASSERT_EQ(message->measureOrFlatten(nullptr, &size, &message.cursor()), -2);
    ASSERT_GT(size, 0);
    std::string buffer(static_cast<std::size_t>(size) + 1, 'Z');
    int length = 0;
    ASSERT_EQ(message->measureOrFlatten(buffer.data(), &length, &message.cursor()), 0);
    EXPECT_EQ(length, size);
    EXPECT_EQ(buffer.back(), 'Z');
    buffer.pop_back();
    EXPECT_EQ(buffer, TestSupport::flattened(message.cursor()));
    EXPECT_EQ(message->measureOrFlatten(nullptr, &size, nullptr), -1);
    EXPECT_EQ(message->measureOrFlatten(nullptr, nullptr, &message.cursor()), -1);
}

TEST(QelBinaryTest, FlattenedElementIsReadAsAChildOfTheRoot) {
    const Sample message;
    ASSERT_EQ(message.cursor().seek(environmentId), 0);
    const std::string bytes = TestSupport::flattened(message.cursor());
    const TestMessage parsed(QelMessage::getFactory()->createNew(bytes.data(), static_cast<int>(bytes.size())));
    EXPECT_EQ(describe(*parsed.get()), describe(*message.get()));
    EXPECT_THAT(parsed->getSubscriptions(), IsEmpty());
    ASSERT_EQ(parsed.cursor().seek(environmentId), 0);
    EXPECT_EQ(TestSupport::flattened(parsed.cursor()), bytes);
}

TEST(QelBinaryTest, FlattenedRootRoundTripsWithItsEnvelope) {
    const Sample message;
    const std::string bytes = TestSupport::flattened(message.cursor());
    EXPECT_EQ(bytes, TestSupport::binaryOf(*message.get()));
    const TestMessage parsed(QelMessage::getFactory()->createNew(bytes.data(), static_cast<int>(bytes.size())));
    EXPECT_EQ(TestSupport::textOf(*parsed.get()), TestSupport::textOf(*message.get()));
}

TEST(QelBinaryTest, FactoryReturnsNullForAMalformedBuffer) {
    EXPECT_EQ(QelMessage::getFactory()->createNew("rubbish", 7), nullptr);
    EXPECT_EQ(QelMessage::getFactory()->createNew("", 0), nullptr);
    EXPECT_EQ(QelMessage::getFactory()->createNew(nullptr, 0), nullptr);
    EXPECT_EQ(QelMessage::getFactory()->createNew("", -1), nullptr);
}

// ---------------------------------------------------------------------------------------------------------- files

TEST(QelBinaryTest, FileRoundTrips) {
    const Directory directory;
    const Sample message;
    ASSERT_EQ(message->saveToFile(directory / "m.xml"), 0) << getErrorMessage();
    EXPECT_EQ(read(directory / "m.xml"), TestSupport::textOf(*message.get()));
    EXPECT_EQ(directory.files(), 1);
    const TestMessage loaded;
    ASSERT_EQ(loaded->loadFromFile(directory / "m.xml"), 0) << getErrorMessage();
    EXPECT_EQ(TestSupport::binaryOf(*loaded.get()), TestSupport::binaryOf(*message.get()));
}

TEST(QelBinaryTest, ReplacedFileKeepsItsPermissions) {
    const Directory directory;
    write(directory / "m.xml", "old");
    ASSERT_EQ(::chmod((directory / "m.xml").c_str(), 0600), 0);
    ASSERT_EQ(Sample()->saveToFile(directory / "m.xml"), 0);
    EXPECT_THAT(read(directory / "m.xml"), StartsWith("<?xml"));
    struct stat status {};
    ASSERT_EQ(::stat((directory / "m.xml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    EXPECT_EQ(directory.files(), 1);
}

TEST(QelBinaryTest, FailedReplacementLeavesTheFileAndNoTemporaryFile) {
    const Directory directory;
    std::filesystem::create_directory(directory / "m.xml");
    write(directory / "m.xml/inside", "old");
    EXPECT_NE(Sample()->saveToFile(directory / "m.xml"), 0);
    EXPECT_THAT(getErrorMessage(), StartsWith((directory / "m.xml") + ": "));
    EXPECT_EQ(directory.files(), 1);
    EXPECT_EQ(read(directory / "m.xml/inside"), "old");
}

TEST(QelBinaryTest, ReportsAMissingDirectory) {
    const Directory directory;
    EXPECT_NE(Sample()->saveToFile(directory / "none/m.xml"), 0);
    EXPECT_EQ(getErrorMessage(), (directory / "none/m.xml") + ": No such file or directory");
}

TEST(QelBinaryTest, FailedWriteLeavesTheFileUnchanged) {
    const Directory directory;
    write(directory / "m.xml", "old");
    const TestMessage message;
    for (int i = 0; i < 300; ++i)
        message.cursor().newChild(nameId);
    EXPECT_NE(message->saveToFile(directory / "m.xml"), 0);
    EXPECT_EQ(getErrorMessage(), (directory / "m.xml") + ": the tree is deeper than 256 elements");
    EXPECT_EQ(read(directory / "m.xml"), "old");
}

TEST(QelBinaryTest, ReportsTheReasonOfAFailedFileRead) {
    const Directory directory;
    const Sample message;
    const std::string before = TestSupport::binaryOf(*message.get());
    EXPECT_NE(message->loadFromFile(directory / "none.xml"), 0);
    EXPECT_EQ(getErrorMessage(), (directory / "none.xml") + ": No such file or directory");
    std::filesystem::create_directory(directory / "directory");
    EXPECT_NE(message->loadFromFile(directory / "directory"), 0);
    EXPECT_EQ(getErrorMessage(), (directory / "directory") + ": Is a directory");
    EXPECT_EQ(TestSupport::binaryOf(*message.get()), before);
}

TEST(QelBinaryTest, ReportsTheLocationInAMalformedFile) {
    const Directory directory;
    write(directory / "m.xml", "<message>\n<a>\n</message>");
    const Sample message;
    EXPECT_NE(message->loadFromFile(directory / "m.xml"), 0);
    EXPECT_THAT(getErrorMessage(), StartsWith((directory / "m.xml") + ": line 3, column "));
    EXPECT_EQ(message.cursor().seekPresence(environmentId), 0);
}

TEST(QelBinaryTest, TooLongFileIsNotRead) {
    const Directory directory;
    write(directory / "m.xml", "<message/>");
    std::filesystem::resize_file(directory / "m.xml", (64U << 20) + 1);
    EXPECT_NE(TestMessage()->loadFromFile(directory / "m.xml"), 0);
    EXPECT_EQ(getErrorMessage(), (directory / "m.xml") + ": longer than 67108864 bytes");
}

} // namespace
} // namespace Qel
