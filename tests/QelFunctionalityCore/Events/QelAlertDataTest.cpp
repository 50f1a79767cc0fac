#include "QelFunctionalityCore/Events/QelAlertData.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using TestSupport::childIDs;
using TestSupport::someEID;

QelAlertData alertOf(QelAlertData::AlertType type) {
    QelAlertData alert;
    alert.eid = someEID;
    alert.type = type;
    return alert;
}

boost::shared_ptr<QelAlertData> shared(const QelAlertData& alert) {
    return boost::shared_ptr<QelAlertData>(new QelAlertData(alert));
}

TEST(QelAlertDataTest, DefaultIsGreenWithoutEnvironment) {
    const QelAlertData alert;
    EXPECT_FALSE(alert.eid.isValid());
    EXPECT_EQ(alert.type, QelAlertType::green);
}

TEST(QelAlertDataTest, InfoContainsEnvironmentAndColour) {
    const std::pair<QelAlertType, const char*> colours[] = {{QelAlertType::green, "green"},
                                                            {QelAlertType::yellow, "yellow"},
                                                            {QelAlertType::red, "red"},
                                                            {QelAlertType::black, "black"}};
    for (const auto& [type, colour] : colours) {
        QelInfo info("%env% is %type%", "", true);
        alertOf(type).toInfo(info);
        EXPECT_EQ(info.toString(), someEID.toString() + " is " + colour);
        EXPECT_TRUE(info.getParameter("type")->translatable);
        EXPECT_EQ(info.getParameterByPath("env/eid"), someEID.toString());
    }
}

TEST(QelAlertDataTest, UnknownColourHasNoName) {
    for (const int none : {-1, 4}) {
        QelInfo info("%type%", "", true);
        alertOf(static_cast<QelAlertType>(none)).toInfo(info);
        EXPECT_EQ(info.toString(), "");
    }
}

TEST(QelAlertDataTest, AddsAlertSubscription) {
    const TestSupport::TestMessage message;
    EXPECT_EQ(QelAlertData().addSubscriptionName(*message.get()), 0);
    EXPECT_THAT(message->getSubscriptions(), ElementsAre("alerts_subscription"));
}

TEST(QelAlertDataTest, CompareIDComparesEnvironments) {
    const QelAlertData alert = alertOf(QelAlertType::red);
    QelAlertData elsewhere = alert;
    elsewhere.eid = QelEID(1, 2);
    EXPECT_TRUE(alert.compareID(shared(alertOf(QelAlertType::green))));
    EXPECT_FALSE(alert.compareID(shared(elsewhere)));
    EXPECT_FALSE(alert.compareID(nullptr));
}

TEST(QelAlertDataTest, CompareDataComparesColours) {
    const QelAlertData alert = alertOf(QelAlertType::red);
    QelAlertData elsewhere = alert;
    elsewhere.eid = QelEID(1, 2);
    EXPECT_TRUE(alert.compareData(shared(elsewhere)));
    EXPECT_TRUE(alert == elsewhere);
    EXPECT_FALSE(alert.compareData(shared(alertOf(QelAlertType::black))));
    EXPECT_FALSE(alert == alertOf(QelAlertType::black));
    EXPECT_FALSE(alert.compareData(nullptr));
}

TEST(QelAlertDataTest, WritesEnvironmentFirst) {
    const TestTree tree;
    ASSERT_EQ(QelAlertData::Writer()(*tree, alertOf(QelAlertType::red)), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1866, 1007));
    EXPECT_EQ(childValue(*tree, 1007), "2");
}

TEST(QelAlertDataTest, ReadsColourFirst) {
    const TestTree tree;
    ASSERT_EQ(QelAlertData::Writer()(*tree, alertOf(QelAlertType::red)), 0);
    tree->deleteChild(1866);
    QelAlertData alert;
    EXPECT_EQ(QelAlertData::Reader()(*tree, alert), -1);
    EXPECT_EQ(alert.type, QelAlertType::red);
}

TEST(QelAlertDataTest, RejectsUnknownColour) {
    for (const char* const bad : {"4", "-1", "", "red", "4294967296"}) {
        const TestTree tree;
        ASSERT_EQ(tree->putObj(someEID, 1866), 0);
        tree->putValue(std::string(bad), 1007);
        QelAlertData alert = alertOf(QelAlertType::yellow);
        alert.eid = QelEID();
        EXPECT_EQ(QelAlertData::Reader()(*tree, alert), -1) << bad;
        EXPECT_EQ(alert.type, QelAlertType::yellow) << bad;
        EXPECT_FALSE(alert.eid.isValid()) << bad;
    }
}

} // namespace

} // namespace Qel
