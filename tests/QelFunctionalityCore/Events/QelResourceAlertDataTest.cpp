#include "QelFunctionalityCore/Events/QelResourceAlertData.h"

#include <bit>

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Environment/EnvTestSupport.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"
#include "QelFunctionalityCore/TestTree.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "support/ScriptedCursor.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using TestSupport::childIDs;
using TestSupport::someEID;

QelResourceAlertData someAlert() {
    QelResourceAlertData alert;
    alert.eid = someEID;
    alert.type = QelAlertType::yellow;
    alert.subsystem = "memory";
    alert.id = "used";
    alert.current.integer = 90;
    alert.hard.integer = 100;
    return alert;
}

QelPerfValue integer(long long value) {
    QelPerfValue perf;
    perf.integer = value;
    return perf;
}

QelPerfValue real(double value) {
    QelPerfValue perf;
    perf.real = value;
    return perf;
}

QelResourceAlertData withInstance(const std::string& instance) {
    QelResourceAlertData alert = someAlert();
    alert.instance = instance;
    return alert;
}

template <class Value> QelResourceAlertData with(Value QelResourceAlertData::*field, const Value& value) {
    QelResourceAlertData alert = someAlert();
    alert.*field = value;
    return alert;
}

boost::shared_ptr<QelAlertData> shared(const QelResourceAlertData& alert) {
    return boost::shared_ptr<QelAlertData>(new QelResourceAlertData(alert));
}

/// Vocabularies with one parameter "used", without a value type if `valueType` is empty.
boost::shared_ptr<QelVocMap> vocabularies(const std::string& valueType) {
    QelMessage* const message = QelMessage::getFactory()->createNew();
    const std::string text =
        "<message><vocabulary><name>v</name><parameter><id>vocversion</id><data>1</data></parameter>"
        "<parameter><id>used</id>" +
        (valueType.empty() ? "" : "<value_type>" + valueType + "</value_type>") + "</parameter></vocabulary></message>";
    EXPECT_EQ(message->create(0), 0);
    EXPECT_EQ(message->fromTextEx(text.c_str(), 0), 0) << getErrorMessage();
    boost::shared_ptr<QelVocMap> map(new QelVocMap(message));
    EXPECT_TRUE(map->isFeatureEnabled("used"));
    return map;
}

// --- Conversion to an info

TEST(QelResourceAlertDataTest, InfoContainsValueAndLimits) {
    QelResourceAlertData alert = someAlert();
    alert.soft = integer(80);
    QelInfo info("old", "old", false);
    alert.toInfo(info);
    EXPECT_EQ(info.toString(), "Resource used yellow alert on environment " + someEID.toString() +
                                   " current value: 90 soft limit: 80 hard limit: 100");
    EXPECT_EQ(info.text, "Resource %id% %type% alert on environment %env% current value: %cur% soft limit: %soft% hard "
                         "limit: %hard%");
    EXPECT_EQ(info.name, "");
    EXPECT_TRUE(info.translatable);
    for (const char* const value : {"id", "cur", "soft", "hard"})
        EXPECT_FALSE(info.getParameter(value)->translatable) << value;
    EXPECT_EQ(info.parameters.size(), 6U);
}

TEST(QelResourceAlertDataTest, InfoHasEmptySoftLimitIfUnset) {
    QelInfo info;
    someAlert().toInfo(info);
    EXPECT_THAT(info.toString(), HasSubstr("soft limit:  hard limit: 100"));
}

TEST(QelResourceAlertDataTest, InfoShowsDoubleAsBitPattern) {
    QelResourceAlertData alert = someAlert();
    alert.isInteger = false;
    alert.current.real = 0.5;
    QelInfo info;
    alert.toInfo(info);
    EXPECT_EQ(info.getParameterByPath("cur"), std::to_string(std::bit_cast<long long>(0.5)));
}

TEST(QelResourceAlertDataTest, AddsOwnAndAlertSubscription) {
    const TestSupport::TestMessage message;
    EXPECT_EQ(someAlert().addSubscriptionName(*message.get()), 0);
    EXPECT_THAT(message->getSubscriptions(), ElementsAre("alerts_subscription", "resource_alerts_subscription"));
}

// --- Comparison

TEST(QelResourceAlertDataTest, CompareIDComparesEnvironmentAndCounter) {
    const QelResourceAlertData alert = someAlert();
    EXPECT_TRUE(alert.compareID(shared(with(&QelResourceAlertData::current, integer(1)))));
    EXPECT_FALSE(alert.compareID(shared(with(&QelResourceAlertData::subsystem, std::string("cpu")))));
    EXPECT_FALSE(alert.compareID(shared(with(&QelResourceAlertData::id, std::string("free")))));
    QelResourceAlertData elsewhere = alert;
    elsewhere.eid = QelEID(1, 2);
    EXPECT_FALSE(alert.compareID(shared(elsewhere)));
    EXPECT_FALSE(alert.compareID(nullptr));
}

TEST(QelResourceAlertDataTest, CompareIDRejectsOtherClass) {
    boost::shared_ptr<QelServerGroupAlertData> group(new QelServerGroupAlertData);
    group->eid = someEID;
    group->subsystem = "memory";
    EXPECT_FALSE(someAlert().compareID(group));
    EXPECT_FALSE(group->compareID(shared(someAlert())));
}

TEST(QelResourceAlertDataTest, InstanceMatchesItselfAndWildcard) {
    const std::string any(QelResourceAlertData::anyInstance);
    EXPECT_EQ(any, "ANY_INSTANCE");
    const auto matches = [](const QelResourceAlertData& a, const QelResourceAlertData& b) {
        EXPECT_EQ(a == b, a.compareID(shared(b)));
        return a == b;
    };
    EXPECT_TRUE(matches(someAlert(), someAlert())) << "neither has an instance";
    EXPECT_TRUE(matches(withInstance("x"), withInstance("x")));
    EXPECT_FALSE(matches(withInstance("x"), withInstance("y")));
    EXPECT_FALSE(matches(someAlert(), withInstance("x")));
    EXPECT_FALSE(matches(withInstance("x"), someAlert()));
    EXPECT_TRUE(matches(withInstance(any), withInstance("x")));
    EXPECT_TRUE(matches(withInstance("x"), withInstance(any)));
    EXPECT_TRUE(matches(someAlert(), withInstance(any)));
    QelResourceAlertData unspecified = withInstance(any);
    unspecified.instance.specify(false);
    EXPECT_FALSE(matches(unspecified, withInstance("x")));
}

TEST(QelResourceAlertDataTest, CompareDataComparesColours) {
    const QelResourceAlertData alert = someAlert();
    EXPECT_TRUE(alert.compareData(shared(with(&QelResourceAlertData::id, std::string("free")))));
    QelResourceAlertData red = alert;
    red.type = QelAlertType::red;
    EXPECT_FALSE(alert.compareData(shared(red)));
}

TEST(QelResourceAlertDataTest, EqualityComparesColourAndCounter) {
    const QelResourceAlertData alert = someAlert();
    QelResourceAlertData other = alert;
    other.eid = QelEID(1, 2);
    EXPECT_TRUE(alert == other) << "environments are not compared";
    EXPECT_FALSE(alert == with(&QelResourceAlertData::subsystem, std::string("cpu")));
    EXPECT_FALSE(alert == with(&QelResourceAlertData::id, std::string("free")));
    other.type = QelAlertType::red;
    EXPECT_FALSE(alert == other);
}

// --- Marshalling

/// An alert in the root of a message.
class QelResourceAlertDataMessageTest : public testing::Test {
protected:
    void write(const QelResourceAlertData& alert, const std::string& valueType = "none") {
        const auto writer = valueType == "none" ? QelResourceAlertData::Writer()
                                                : QelResourceAlertData::Writer(vocabularies(valueType));
        ASSERT_EQ(writer(*tree, alert), 0);
    }
    int read(QelResourceAlertData& alert, const std::string& valueType = "none") const {
        const auto reader = valueType == "none" ? QelResourceAlertData::Reader()
                                                : QelResourceAlertData::Reader(vocabularies(valueType));
        return reader(*tree, alert);
    }

    TestTree tree;
};

TEST_F(QelResourceAlertDataMessageTest, WritesOwnFieldsAfterBase) {
    QelResourceAlertData alert = withInstance("x");
    alert.soft = integer(80);
    write(alert);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1866, 1007, 1094, 1905, 1906, 1065, 1066, 1067));
}

TEST_F(QelResourceAlertDataMessageTest, RejectedValueFailsWriteButNotOtherValues) {
    for (const bool isInteger : {true, false})
        for (const int rejected : {1065, 1066, 1067}) {
            QelResourceAlertData alert = someAlert();
            alert.isInteger = isInteger;
            if (isInteger)
                alert.soft = integer(80);
            else
                alert.soft = alert.current = alert.hard = real(80);
            const TestSupport::TestMessage message;
            TestSupport::ScriptedCursor cursor(
                message.cursor(), TestSupport::fails(TestSupport::ScriptedCursor::Operation::put, {rejected}));
            EXPECT_NE(cursor.putObj(alert, 0), 0) << rejected;
            for (const int element : {1065, 1066, 1067}) {
                const std::string value = childValue(message.cursor(), element);
                EXPECT_EQ(value.empty() || value == "(none)", element == rejected) << element;
            }
        }
}

TEST_F(QelResourceAlertDataMessageTest, OmitsUnsetFields) {
    write(someAlert());
    EXPECT_THAT(childIDs(*tree), ElementsAre(1866, 1007, 1094, 1906, 1065, 1067));
    QelResourceAlertData back;
    EXPECT_EQ(read(back), 0);
    EXPECT_FALSE(back.instance.isSpecified());
    EXPECT_FALSE(back.soft.isSpecified());
    EXPECT_EQ(back.current.integer, 90);
    EXPECT_EQ(back.hard.integer, 100);
}

TEST_F(QelResourceAlertDataMessageTest, RecordDeterminesFormWithoutVocabularies) {
    QelResourceAlertData alert = someAlert();
    alert.isInteger = false;
    alert.current.real = 0.5;
    alert.hard.real = 1.5;
    write(alert);
    EXPECT_EQ(childValue(*tree, 1065), "0.5");
    QelResourceAlertData back;
    EXPECT_EQ(read(back), -1) << "a default record expects integers";
    back.isInteger = false;
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(back.hard.real, 1.5);
    EXPECT_FALSE(back.isInteger);
}

TEST_F(QelResourceAlertDataMessageTest, VocabulariesDetermineForm) {
    QelResourceAlertData alert = someAlert();
    alert.current.real = 0.5;
    alert.hard.real = 1.5;
    QelPerfValue soft;
    soft.real = 1;
    alert.soft = soft;
    write(alert, "0");
    EXPECT_EQ(childValue(*tree, 1065), "0.5");
    EXPECT_EQ(childValue(*tree, 1066), "1");
    QelResourceAlertData back;
    EXPECT_EQ(read(back, "0"), 0);
    EXPECT_FALSE(back.isInteger) << "the reader stores the form";
    EXPECT_EQ(back.current.real, 0.5);
    EXPECT_EQ(back.soft.get().real, 1);
}

TEST_F(QelResourceAlertDataMessageTest, NonzeroValueTypeMeansIntegers) {
    QelResourceAlertData alert = someAlert();
    alert.isInteger = false;
    write(alert, "-3");
    EXPECT_EQ(childValue(*tree, 1065), "90");
    QelResourceAlertData back;
    back.isInteger = false;
    EXPECT_EQ(read(back, "7"), 0);
    EXPECT_TRUE(back.isInteger);
    EXPECT_EQ(back.current.integer, 90);
}

TEST_F(QelResourceAlertDataMessageTest, MalformedValueTypeKeepsForm) {
    write(someAlert(), "");
    EXPECT_EQ(childValue(*tree, 1065), "90");
    for (const char* const unreadable : {"", "real"})
        for (const bool form : {true, false}) {
            QelResourceAlertData back;
            back.isInteger = form;
            EXPECT_EQ(read(back, unreadable), 0);
            EXPECT_EQ(back.isInteger, form);
        }
}

TEST_F(QelResourceAlertDataMessageTest, RecordDeterminesFormOfUnknownCounter) {
    write(with(&QelResourceAlertData::id, std::string("free")), "0");
    EXPECT_EQ(childValue(*tree, 1065), "90");
    QelResourceAlertData back;
    EXPECT_EQ(read(back, "0"), 0);
    EXPECT_TRUE(back.isInteger);
}

TEST_F(QelResourceAlertDataMessageTest, RejectsMissingRequiredField) {
    for (const int missing : {1866, 1007, 1094, 1906, 1065, 1067}) {
        const TestTree other;
        ASSERT_EQ(QelResourceAlertData::Writer()(*other, someAlert()), 0);
        other->deleteChild(missing);
        QelResourceAlertData back;
        EXPECT_NE(QelResourceAlertData::Reader()(*other, back), 0) << missing;
        EXPECT_EQ(back.hard.integer, missing == 1065 ? 100 : 0) << missing << ": all values are read";
    }
}

TEST_F(QelResourceAlertDataMessageTest, MalformedSoftLimitIsUnspecified) {
    write(someAlert());
    tree->putValue(std::string("high"), 1066);
    QelResourceAlertData back;
    EXPECT_EQ(read(back), 0);
    EXPECT_FALSE(back.soft.isSpecified());
}

} // namespace

} // namespace Qel
