#include "QelFunctionalityCore/Events/QelEvent.h"

#include <ctime>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"
#include "QelFunctionalityCore/Security/LocalConfig.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::IsNull;
using testing::NotNull;
using TestSupport::childIDs;

constexpr int element = 1115;

QelEvent eventWith(boost::shared_ptr<QelEventData> data = {}) {
    QelEvent event;
    event.eid = localEID;
    event.category = "category";
    event.info = QelInfo("text", "name", true);
    event.data = std::move(data);
    return event;
}

boost::shared_ptr<QelServerGroupAlertData> someAlert() {
    boost::shared_ptr<QelServerGroupAlertData> alert(new QelServerGroupAlertData);
    alert->reason = "why";
    return alert;
}

/// An event in a message.
class QelEventMessageTest : public testing::Test {
protected:
    void write(const QelEvent& event) {
        ASSERT_EQ(tree->putObj(event, element), 0);
        tree->seek(element);
    }
    int read(QelEvent& event) const { return QelEvent::Reader()(*tree, event); }
    /// A cursor at the payload.
    void seekPayload() const {
        ASSERT_EQ(tree->seek(1307), 0);
        ASSERT_EQ(tree->seek(1913), 0);
    }
    void seekBack() const {
        tree->seekUp();
        tree->seekUp();
    }

    TestTree tree;
};

// --- Construction

TEST(QelEventTest, DefaultsToLocalAgentAndCurrentTime) {
    const LocalConfig config(localEID);
    QelToken token;
    token.sid = QelSID("S-1-5-18");
    const QelToken before = QelToken::setCurrent(token);
    const long earliest = std::time(nullptr);
    const QelEvent event;
    const long latest = std::time(nullptr);
    QelToken::setCurrent(before);

    EXPECT_EQ(event.eid, localEID);
    EXPECT_EQ(event.sid, token.sid);
    EXPECT_GE(event.time, earliest);
    EXPECT_LE(event.time, latest);
    EXPECT_EQ(event.source, "agent");
    EXPECT_EQ(event.category, "");
    EXPECT_EQ(event.severity, 1);
    EXPECT_THAT(event.data, IsNull());
    EXPECT_TRUE(event.info.empty());
}

TEST(QelEventTest, IdentifiersAreUnique) {
    const QelEvent first;
    const QelEvent second;
    EXPECT_TRUE(first.id.isValid());
    EXPECT_NE(first.id, second.id);
}

TEST(QelEventTest, ConstructorSetsSource) {
    EXPECT_EQ(QelEvent("plug-in").source, "plug-in");
    EXPECT_EQ(factoryQelEvent.createObject()->source, "agent");
}

// --- Subscriptions

TEST(QelEventTest, AddsSubscriptionNameOfClass) {
    const TestSupport::TestMessage message;
    EXPECT_EQ(QelEventData::addSubscription(QelEvent(), *message.get()), 0);
    EXPECT_EQ(QelEventData::addSubscription(QelConfiguration(), *message.get()), 0);
    EXPECT_THAT(message->getSubscriptions(), ElementsAre("events_subscription", "qelconf_subscription"));
}

TEST(QelEventTest, UnknownPayloadHasNoInfoAndNoSubscription) {
    const TestSupport::TestMessage message;
    QelAnyEventData data;
    EXPECT_EQ(data.addSubscriptionName(*message.get()), 0);
    EXPECT_TRUE(message->getSubscriptions().empty());
    const QelInfo before("text", "name", false);
    QelInfo info = before;
    data.toInfo(info);
    EXPECT_EQ(info, before);
}

// --- Marshalling

TEST_F(QelEventMessageTest, WritesPayloadAndInfoLast) {
    write(eventWith(someAlert()));
    EXPECT_THAT(childIDs(*tree), ElementsAre(1866, 1004, 1803, 1264, 1911, 1259, 1010, 1307, 1134));
    EXPECT_EQ(tree->curType(), "env:event");
    seekPayload();
    EXPECT_EQ(tree->curType(), "alert:server_group_alert");
    EXPECT_EQ(childValue(*tree, 1496), "why");
}

TEST_F(QelEventMessageTest, OmitsElementOfMissingPayload) {
    write(eventWith());
    EXPECT_THAT(childIDs(*tree), ElementsAre(1866, 1004, 1803, 1264, 1911, 1259, 1010, 1134));
    QelEvent event;
    EXPECT_EQ(read(event), 0);
    EXPECT_THAT(event.data, IsNull());
}

TEST_F(QelEventMessageTest, RoundTrips) {
    QelEvent event = eventWith(someAlert());
    event.time = 1'000'000'000;
    event.source = "source";
    event.severity = 7;
    event.sid = QelSID("S-1-5-18");
    write(event);
    QelEvent back;
    ASSERT_EQ(read(back), 0);
    EXPECT_EQ(back.eid, event.eid);
    EXPECT_EQ(back.time, event.time);
    EXPECT_EQ(back.source, event.source);
    EXPECT_EQ(back.category, event.category);
    EXPECT_EQ(back.sid, event.sid);
    EXPECT_EQ(back.severity, event.severity);
    EXPECT_EQ(back.id, event.id);
    EXPECT_EQ(back.info, event.info);
    const auto* const alert = dynamic_cast<const QelServerGroupAlertData*>(back.data.get());
    ASSERT_THAT(alert, NotNull());
    EXPECT_EQ(alert->reason, "why");
}

TEST_F(QelEventMessageTest, MissingTimeDefaultsToTimeOfMessage) {
    write(eventWith());
    tree->getMessage()->setTime(1'234'567'890);
    for (const bool isMalformed : {false, true}) {
        tree->deleteChild(1004);
        if (isMalformed)
            tree->putValue(std::string("noon"), 1004);
        QelEvent event;
        event.time = 1;
        EXPECT_EQ(read(event), 0);
        EXPECT_EQ(event.time, 1'234'567'890);
    }
}

TEST_F(QelEventMessageTest, TimeMissingInRecordAndMessageIsUnchanged) {
    write(eventWith());
    tree->deleteChild(1004);
    QelEvent event;
    event.time = 42;
    EXPECT_EQ(read(event), 0);
    EXPECT_EQ(event.time, 42);
}

TEST_F(QelEventMessageTest, MissingSidIsUnchanged) {
    write(eventWith());
    tree->deleteChild(1911);
    QelEvent event;
    event.sid = QelSID("S-1-5-18");
    EXPECT_EQ(read(event), 0);
    EXPECT_EQ(event.sid, QelSID("S-1-5-18"));
}

TEST_F(QelEventMessageTest, RejectsMissingRequiredField) {
    const QelEvent event = eventWith(someAlert());
    for (const int missing : {1866, 1803, 1264, 1259, 1010, 1134}) {
        write(event);
        tree->deleteChild(missing);
        QelEvent back;
        EXPECT_EQ(read(back), -1) << missing;
        EXPECT_EQ(back.data != nullptr, missing == 1134) << missing << ": later fields are not read";
        EXPECT_EQ(tree->curID(), element);
        tree->seekUp();
    }
}

TEST_F(QelEventMessageTest, IgnoresPayloadOfUnknownClass) {
    write(eventWith(someAlert()));
    seekPayload();
    tree->setComplexType(285, 101);
    seekBack();
    QelEvent event;
    EXPECT_EQ(read(event), 0);
    EXPECT_THAT(event.data, IsNull());
    EXPECT_EQ(event.info.text, "text");
}

TEST_F(QelEventMessageTest, IgnoresMalformedPayload) {
    write(eventWith(someAlert()));
    seekPayload();
    tree->deleteChild(1007);
    tree->putValue(4, 1007);
    seekBack();
    QelEvent event;
    EXPECT_EQ(read(event), 0);
    EXPECT_THAT(event.data, IsNull());
}

TEST_F(QelEventMessageTest, IgnoresEmptyPayloadElement) {
    write(eventWith());
    tree->putChild(1307);
    QelEvent event;
    EXPECT_EQ(read(event), 0);
    EXPECT_THAT(event.data, IsNull());
}

TEST_F(QelEventMessageTest, UnknownPayloadRoundTripsVerbatim) {
    const TestTree source;
    source->newChild(1307);
    source->putValue(std::string("kept"), 1026);
    boost::shared_ptr<QelAnyEventData> data(new QelAnyEventData);
    data->any.reset(source.get(), true);
    write(eventWith(data));
    seekPayload();
    EXPECT_EQ(tree->curType(), "env:any_event_data");
    seekBack();
    QelEvent event;
    ASSERT_EQ(read(event), 0);
    const auto back = boost::dynamic_pointer_cast<QelAnyEventData>(event.data);
    ASSERT_THAT(back, NotNull());
    std::string name;
    EXPECT_EQ(back->any.get(1026, name), "kept");
}

/// A payload class without a registered factory.
struct ForeignData : QelEventData {
    void toInfo(QelInfo&) const override {}
    int addSubscriptionName(QelMessage&) override { return 0; }
};

TEST_F(QelEventMessageTest, UnwritablePayloadFailsWrite) {
    EXPECT_NE(tree->putObj(eventWith(boost::shared_ptr<QelEventData>(new ForeignData)), element), 0);
}

TEST_F(QelEventMessageTest, EmptySidFailsWrite) {
    QelEvent event = eventWith(someAlert());
    ASSERT_EQ(event.sid.fromBinary(nullptr, 0), 0);
    EXPECT_NE(tree->putObj(event, element), 0);
    ASSERT_EQ(tree->seek(element), 0);
    EXPECT_EQ(tree->seekPresence(1259), -1) << "later fields are not written";
}

} // namespace

} // namespace Qel
