#include "QelFunctionalityCore/Security/QelSession.h"

#include <ctime>

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr long messageTime = 1'795'167'000;

QelSession session() {
    QelSession made;
    made.sessionID = "session-1";
    made.authName.name = "anna";
    made.authName.realm = QelGUID(1, 2);
    made.time1961 = 1000;
    made.time1799 = 2000;
    made.timeout = 900;
    made.revision = 5;
    made.token.sid = QelSID("S-1-5-42");
    made.peerAddress = QelIPv6("2001:db8::1");
    return made;
}

/// A message with a time, for one session.
class QelSessionTest : public testing::Test {
protected:
    QelSessionTest() { message->setTime(messageTime); }

    void put(const QelSession& written) { ASSERT_EQ(cursor.putObj(written, 0), 0); }
    /// Writes a complete session, then replaces the value of one element, or removes the element if `value` is null.
    void putWith(int id, const char* value) {
        put(session());
        cursor.deleteChild(id);
        if (value)
            cursor.putValue(std::string(value), id);
    }
    int read(QelSession& into) { return cursor.getObj(into, 0); }
    int read() {
        QelSession into;
        return read(into);
    }

    static void keep(QelSession& in, const std::string& name, const std::string& value) {
        in.data()[name].any()->putValue(value, 0);
    }
    static std::string kept(QelSession& in, const std::string& name) {
        const auto found = in.data().find(name);
        return found == in.data().end() || found->second.empty() ? "(none)" : childValue(*found->second.any(), 0);
    }

    TestSupport::TestMessage message;
    QelMessageIterator& cursor = message.cursor();
};

TEST_F(QelSessionTest, WritesFieldsInOrder) {
    QelSession written = session();
    keep(written, "plugin", "value");
    put(written);
    EXPECT_THAT(childIDs(cursor), ElementsAre(1010, 1025, 1961, 1799, 1320, 1221, 1944, 1262, 1307));
}

TEST_F(QelSessionTest, AllFieldsRoundTrip) {
    put(session());
    QelSession back;
    ASSERT_EQ(read(back), 0);
    EXPECT_EQ(back.sessionID, "session-1");
    EXPECT_EQ(back.authName.name.get(), "anna");
    EXPECT_EQ(back.time1961, 1000);
    EXPECT_EQ(back.time1799, 2000);
    EXPECT_EQ(back.timeout, 900);
    EXPECT_FALSE(back.isPersistent());
    EXPECT_EQ(back.revision, 5);
    EXPECT_EQ(back.token.sid.toString(), "S-1-5-42");
    EXPECT_EQ(back.peerAddress, QelIPv6("2001:db8::1"));
}

TEST_F(QelSessionTest, OmitsTimeoutOfPersistentSession) {
    QelSession written = session();
    written.timeout = -1;
    put(written);
    EXPECT_NE(cursor.seekPresence(1320), 0);
    QelSession back;
    ASSERT_EQ(read(back), 0);
    EXPECT_EQ(back.timeout, -1);
    EXPECT_TRUE(back.isPersistent());
    EXPECT_FALSE(session().isPersistent());
}

TEST_F(QelSessionTest, MissingTimeoutMakesSessionPersistent) {
    putWith(1320, nullptr);
    QelSession back = session();
    ASSERT_EQ(read(back), 0);
    EXPECT_TRUE(back.isPersistent());
}

TEST_F(QelSessionTest, RejectsUnreadableTimeout) {
    putWith(1320, "soon");
    QelSession back = session();
    EXPECT_EQ(read(back), -1);
    EXPECT_EQ(back.timeout, 900);
}

TEST_F(QelSessionTest, RevisionIsMinorVersionNumber) {
    put(session());
    EXPECT_EQ(childValue(cursor, 1221), "0.5");
    const auto revisionOf = [this](const char* text) {
        cursor.deleteChild(1221);
        cursor.putValue(std::string(text), 1221);
        QelSession back;
        EXPECT_EQ(read(back), 0) << text;
        return back.revision;
    };
    EXPECT_EQ(revisionOf("7.12.3"), 12);
    EXPECT_EQ(revisionOf("."), 0);
    EXPECT_EQ(revisionOf("0.x"), 0);
    EXPECT_EQ(revisionOf("0. 8"), 8);
    EXPECT_EQ(revisionOf("0.-3"), -3);
    EXPECT_EQ(revisionOf("0.99999999999999999999"), 2147483647);
}

TEST_F(QelSessionTest, RejectsRevisionWithoutDot) {
    putWith(1221, "5");
    EXPECT_EQ(read(), -1);
    cursor.deleteChild(1221);
    cursor.putChild(1221);
    EXPECT_EQ(read(), -1);
}

TEST_F(QelSessionTest, RejectsMissingRequiredField) {
    for (const int id : {1010, 1025, 1961, 1799, 1221}) {
        const TestSupport::TestMessage other;
        other->setTime(messageTime);
        ASSERT_EQ(other.cursor().putObj(session(), 0), 0);
        other.cursor().deleteChild(id);
        QelSession back;
        EXPECT_EQ(other.cursor().getObj(back, 0), -1) << id;
    }
}

TEST_F(QelSessionTest, FailedFieldStopsReader) {
    putWith(1961, "no time");
    QelSession back;
    EXPECT_EQ(read(back), -1);
    EXPECT_EQ(back.sessionID, "session-1");
    EXPECT_EQ(back.authName.name.get(), "anna");
    EXPECT_EQ(back.time1799, 0);
    EXPECT_EQ(back.timeout, 0);
    EXPECT_EQ(back.revision, 0);
    EXPECT_EQ(back.token.sid.toString(), "S-1-0-0");
}

TEST_F(QelSessionTest, TokenIsOptional) {
    putWith(1944, nullptr);
    QelSession back = session();
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(back.token.sid.toString(), "S-1-5-42");
}

TEST_F(QelSessionTest, UnknownAddressIsOmittedAndMissingOneKeepsPreviousValue) {
    QelSession written = session();
    written.peerAddress = QelIPv6();
    ASSERT_TRUE(written.peerAddress.isAny());
    put(written);
    EXPECT_NE(cursor.seekPresence(1262), 0);
    QelSession back = session();
    ASSERT_EQ(read(back), 0);
    EXPECT_EQ(back.peerAddress, QelIPv6("2001:db8::1"));
}

TEST_F(QelSessionTest, ReaderRequiresMessageTime) {
    const TestSupport::TestMessage timeless;
    ASSERT_EQ(timeless.cursor().putObj(session(), 0), 0);
    QelSession back;
    clearErrorMessage();
    EXPECT_EQ(timeless.cursor().getObj(back, 0), -1);
    EXPECT_EQ(back.sessionID, "");
    EXPECT_THAT(getErrorMessage(), HasSubstr("the message has no time"));
}

TEST_F(QelSessionTest, SkewIsLocalTimeMinusMessageTime) {
    put(session());
    const long now = std::time(nullptr);
    for (const long ahead : {100L, -100L}) {
        message->setTime(now + ahead);
        QelSession back;
        ASSERT_EQ(read(back), 0);
        EXPECT_GE(back.timeSkew, -ahead);
        EXPECT_LE(back.timeSkew, -ahead + (std::time(nullptr) - now));
    }
}

TEST_F(QelSessionTest, SkewIsSetEvenIfReadFails) {
    putWith(1010, nullptr);
    message->setTime(std::time(nullptr) - 1'000'000);
    QelSession back;
    EXPECT_EQ(read(back), -1);
    EXPECT_GE(back.timeSkew, 1'000'000);
}

TEST_F(QelSessionTest, DataRoundTripsByKey) {
    QelSession written = session();
    keep(written, "first", "1");
    keep(written, "second", "2");
    written.data()["without a value"];
    put(written);
    ASSERT_EQ(cursor.firstChild(1307), 0);
    EXPECT_EQ(childValue(cursor, 1240), "first");
    EXPECT_EQ(childValue(cursor, 1018), "1");
    cursor.seekUp();
    QelSession back;
    ASSERT_EQ(read(back), 0);
    EXPECT_EQ(back.data().size(), 3U);
    EXPECT_EQ(kept(back, "first"), "1");
    EXPECT_EQ(kept(back, "second"), "2");
    EXPECT_EQ(kept(back, "without a value"), "(none)");
}

TEST_F(QelSessionTest, EntryWithoutKeyEndsDataAndIsIgnored) {
    QelSession written = session();
    keep(written, "first", "1");
    put(written);
    cursor.newChild(1307);
    cursor.putValue(std::string("2"), 1018);
    cursor.seekUp();
    QelSession back;
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(back.data().size(), 1U);
    EXPECT_EQ(QelSessionDataReader()(cursor, back.data()), -1);
}

TEST_F(QelSessionTest, FunctorsCanSkipData) {
    QelSession written = session();
    keep(written, "first", "1");
    ASSERT_EQ(cursor.putObject(written, QelSession::Writer(true), 0), 0);
    EXPECT_NE(cursor.seekPresence(1307), 0);
    EXPECT_EQ(cursor.seekPresence(1262), 0);

    const TestSupport::TestMessage whole;
    whole->setTime(messageTime);
    ASSERT_EQ(whole.cursor().putObj(written, 0), 0);
    QelSession back;
    EXPECT_EQ(whole.cursor().getObject(back, QelSession::Reader(true), 0), 0);
    EXPECT_TRUE(back.data().empty());
    EXPECT_EQ(back.peerAddress, written.peerAddress);
}

TEST_F(QelSessionTest, DerivedSessionCanOverrideDataStorage) {
    struct ExternalData : QelSession {
        explicit ExternalData(Data& external) : place(external) {}
        const Data& data() const override { return place; }
        Data& data() override { return place; }
        Data& place;
    };
    QelSession::Data place;
    ExternalData written(place);
    static_cast<QelSession&>(written).sessionID = "session-1";
    place["first"].any()->putValue(std::string("1"), 0);
    put(written);
    EXPECT_EQ(TestSupport::countChildren(cursor, 1307), 1);

    QelSession::Data read;
    ExternalData back(read);
    EXPECT_EQ(cursor.getObject(static_cast<QelSession&>(back), QelSession::Reader(), 0), 0);
    EXPECT_EQ(read.size(), 1U);
}

TEST_F(QelSessionTest, WriterIgnoresFailures) {
    QelSession written = session();
    keep(written, "first", "1");
    EXPECT_EQ(TestSupport::writeWithoutValues(written), 0);
    EXPECT_EQ(TestSupport::writeWithoutValues(QelRegisteredClient{.clientID = "client", .clientValue = 3}), 0);
}

TEST(QelRegisteredClientTest, RequiresIdAndValue) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelRegisteredClient{.clientID = "client", .clientValue = 3}, 0), 0);
    QelRegisteredClient back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.clientID, "client");
    EXPECT_EQ(back.clientValue, 3);

    tree->deleteChild(1259);
    QelRegisteredClient partly;
    EXPECT_NE(tree->getObj(partly, 0), 0);
    EXPECT_EQ(partly.clientID, "client");

    tree->deleteChild(1010);
    tree->putValue(4, 1259);
    QelRegisteredClient untouched;
    EXPECT_EQ(tree->getObj(untouched, 0), -1);
    EXPECT_EQ(untouched.clientValue, 0);
}

} // namespace
} // namespace Qel
