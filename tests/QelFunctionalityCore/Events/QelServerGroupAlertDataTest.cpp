#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using TestSupport::childIDs;
using TestSupport::someEID;

QelServerGroupAlertData someAlert() {
    QelServerGroupAlertData alert;
    alert.eid = someEID;
    alert.type = QelAlertType::red;
    alert.code = -7;
    alert.reason = "no answer";
    alert.subsystem = "link";
    return alert;
}

boost::shared_ptr<QelAlertData> shared(const QelServerGroupAlertData& alert) {
    return boost::shared_ptr<QelAlertData>(new QelServerGroupAlertData(alert));
}

/// someAlert() with one field changed.
template <class Value> QelServerGroupAlertData with(Value QelServerGroupAlertData::*field, const Value& value) {
    QelServerGroupAlertData alert = someAlert();
    alert.*field = value;
    return alert;
}

TEST(QelServerGroupAlertDataTest, InfoContainsIdentifierOfEnvironment) {
    QelInfo info("old", "old", false);
    someAlert().toInfo(info);
    EXPECT_EQ(info.toString(), "Marisko group problem with " + someEID.toString() +
                                   ". Subsystem: link failed, reason no answer [code -7].");
    EXPECT_EQ(info.text,
              "Marisko group problem with %env%. Subsystem: %subsystem% failed, reason %reason% [code %code%].");
    EXPECT_EQ(info.name, "");
    EXPECT_TRUE(info.translatable);
    EXPECT_TRUE(info.getParameter("subsystem")->translatable);
    EXPECT_TRUE(info.getParameter("reason")->translatable);
    EXPECT_FALSE(info.getParameter("code")->translatable);
    EXPECT_FALSE(info.getParameter("env")->translatable);
    EXPECT_TRUE(info.getParameter("env")->parameters.empty());
    EXPECT_EQ(info.getParameterByPath("type"), "red");
}

TEST(QelServerGroupAlertDataTest, AddsOwnAndAlertSubscription) {
    const TestSupport::TestMessage message;
    EXPECT_EQ(someAlert().addSubscriptionName(*message.get()), 0);
    EXPECT_THAT(message->getSubscriptions(), ElementsAre("alerts_subscription", "server_group_alerts_subscription"));
}

TEST(QelServerGroupAlertDataTest, CompareIDComparesEnvironmentAndSubsystem) {
    const QelServerGroupAlertData alert = someAlert();
    EXPECT_TRUE(alert.compareID(shared(with(&QelServerGroupAlertData::code, 1))));
    EXPECT_FALSE(alert.compareID(shared(with(&QelServerGroupAlertData::subsystem, std::string("disk")))));
    QelServerGroupAlertData elsewhere = alert;
    elsewhere.eid = QelEID(1, 2);
    EXPECT_FALSE(alert.compareID(shared(elsewhere)));
    EXPECT_FALSE(alert.compareID(nullptr));
    boost::shared_ptr<QelAlertData> plain(new QelAlertData);
    plain->eid = alert.eid;
    EXPECT_FALSE(alert.compareID(plain)) << "different class";
}

TEST(QelServerGroupAlertDataTest, CompareDataComparesCodeReasonAndSubsystem) {
    const QelServerGroupAlertData alert = someAlert();
    QelServerGroupAlertData repeated = alert;
    repeated.type = QelAlertType::green;
    repeated.eid = QelEID(1, 2);
    EXPECT_TRUE(alert.compareData(shared(repeated)));
    EXPECT_FALSE(alert.compareData(shared(with(&QelServerGroupAlertData::code, 1))));
    EXPECT_FALSE(alert.compareData(shared(with(&QelServerGroupAlertData::reason, std::string("x")))));
    EXPECT_FALSE(alert.compareData(shared(with(&QelServerGroupAlertData::subsystem, std::string("x")))));
    EXPECT_FALSE(alert.compareData(nullptr));
    boost::shared_ptr<QelAlertData> plain(new QelAlertData);
    plain->type = alert.type;
    EXPECT_FALSE(alert.compareData(plain)) << "different class";
}

TEST(QelServerGroupAlertDataTest, EqualityComparesColourAndSubsystem) {
    const QelServerGroupAlertData alert = someAlert();
    EXPECT_TRUE(alert == with(&QelServerGroupAlertData::code, 1));
    EXPECT_FALSE(alert == with(&QelServerGroupAlertData::subsystem, std::string("disk")));
    QelServerGroupAlertData green = alert;
    green.type = QelAlertType::green;
    EXPECT_FALSE(alert == green);
}

TEST(QelServerGroupAlertDataTest, WritesOwnFieldsAfterBase) {
    const TestTree tree;
    ASSERT_EQ(QelServerGroupAlertData::Writer()(*tree, someAlert()), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1866, 1007, 1405, 1496, 1094));
}

TEST(QelServerGroupAlertDataTest, OwnFieldsAreOptional) {
    const TestTree tree;
    const QelAlertData base = someAlert();
    ASSERT_EQ(QelAlertData::Writer()(*tree, base), 0);
    QelServerGroupAlertData alert;
    EXPECT_EQ(QelServerGroupAlertData::Reader()(*tree, alert), 0);
    EXPECT_EQ(alert.eid, someEID);
    EXPECT_EQ(alert.code, 0);
    EXPECT_EQ(alert.reason, "");
    tree->putValue(std::string("many"), 1405);
    EXPECT_EQ(QelServerGroupAlertData::Reader()(*tree, alert), 0);
    EXPECT_EQ(alert.code, 0);
    tree->deleteChild(1007);
    EXPECT_EQ(QelServerGroupAlertData::Reader()(*tree, alert), -1) << "the base fields are required";
}

} // namespace

} // namespace Qel
