#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"
#include "support/AllocationCounter.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int subsystem = 1094;
constexpr int instance = 1905;
constexpr int counter = 1906;

const QelEID eid(QelGUID(1, 2));

/// Writes a named element whose children `fill` writes.
template <class Fill> void named(QelMessageIterator& at, int element, const char* name, const Fill& fill) {
    at.newChild(element);
    if (name)
        at.putValue(std::string(name), 1026);
    fill();
    at.seekUp();
}

void putCounter(QelMessageIterator& at, const char* name, const char* value) {
    named(at, counter, name, [&] {
        at.newChild(1018);
        for (const int element : {1060, 1061, 1062, 1065})
            at.putValue(std::string(value), element);
        at.seekUp();
    });
}

class QelMonitorDataTest : public testing::Test {
protected:
    QelMonitorDataTest() {
        at.newChild(1115);
        interval.setStart(100);
    }

    void putHead() {
        at.putObj(eid, 1866);
        at.putObj(interval, 1086);
    }
    void putCounters(const std::vector<std::pair<const char*, const char*>>& counters) {
        named(at, subsystem, "cpu", [&] {
            named(at, instance, "cpu0", [&] {
                for (const auto& [name, value] : counters)
                    putCounter(at, name, value);
            });
        });
    }
    int read(const QelVocMapSP& vocabulary = {}) {
        report = {};
        const int result = at.getObject(report, QelMonitorData::Reader(vocabulary), 0);
        EXPECT_EQ(at.curID(), 1115) << "the cursor is restored";
        return result;
    }
    /// A vocabulary that defines a value type for each of these counters.
    static QelVocMapSP vocabularyOf(const std::vector<std::pair<const char*, const char*>>& types) {
        QelMessage* const message = makeMap({{"counters", "1"}});
        const std::unique_ptr<QelMessageIterator> to(message->rootIterator());
        to->firstChild(1871);
        for (const auto& [name, type] : types) {
            to->newChild(1017);
            to->putValue(std::string(name), 1010);
            to->putValue(std::string(type), "value_type");
            to->seekUp();
        }
        return QelVocMapSP(new QelVocMap(message));
    }
    [[nodiscard]] const QelPerfStat& stat(const char* name) const { return report.data.at("cpu").at("cpu0").at(name); }
    void expectFailure(const char* reason) {
        clearErrorMessage();
        EXPECT_EQ(read(), -1);
        EXPECT_EQ(getErrorMessage(), std::string("cannot read QelMonitorData: ") + reason);
    }

    TestMessage message;
    QelMessageIterator& at = message.cursor();
    QelTimeInterval interval;
    QelMonitorData report;
};

TEST_F(QelMonitorDataTest, ReadsCountersOfInstancesOfSubsystems) {
    putHead();
    named(at, subsystem, "cpu", [&] {
        named(at, instance, "cpu0", [&] {
            putCounter(at, "user", "1");
            putCounter(at, "idle", "2");
        });
        named(at, instance, "cpu1", [&] { putCounter(at, "user", "3"); });
    });
    named(at, subsystem, "net", [&] { named(at, instance, "", [&] { putCounter(at, "bytes", "4"); }); });
    ASSERT_EQ(read(), 0) << getErrorMessage();
    EXPECT_EQ(report.eid, eid);
    EXPECT_EQ(report.interval.startTime, 100);
    ASSERT_EQ(report.data.size(), 2U);
    EXPECT_EQ(stat("user").stat1060.integer, 1);
    EXPECT_EQ(stat("idle").current.integer, 2);
    EXPECT_EQ(report.data["cpu"]["cpu1"]["user"].stat1061.integer, 3);
    EXPECT_EQ(report.data["net"][""]["bytes"].stat1062.integer, 4);

    const TestMessage other;
    other.cursor().newChild(1115);
    EXPECT_EQ(other.cursor().putObj(report, 0), 0);
    QelMonitorData back;
    EXPECT_EQ(other.cursor().getObj(back, 0), 0);
    EXPECT_EQ(back.data["net"][""]["bytes"].stat1062.integer, 4);
    EXPECT_EQ(countChildren(other.cursor(), subsystem), 2);
    EXPECT_EQ(other.cursor().seek(subsystem), 0);
    EXPECT_EQ(childValue(other.cursor(), 1026), "cpu");
    EXPECT_EQ(countChildren(other.cursor(), instance), 2);
}

TEST_F(QelMonitorDataTest, VocabularyDeterminesFormOfCounter) {
    putHead();
    putCounters({{"load", "5"}, {"bytes", "6"}, {"unknown", "7"}, {"odd", "8"}});
    const QelVocMapSP vocabulary = vocabularyOf({{"load", "0"}, {"bytes", "1"}, {"odd", "often"}});
    ASSERT_EQ(read(vocabulary), 0) << getErrorMessage();
    EXPECT_FALSE(stat("load").isInteger);
    EXPECT_EQ(stat("load").current.real, 5.0);
    EXPECT_TRUE(stat("bytes").isInteger);
    EXPECT_EQ(stat("bytes").current.integer, 6);
    EXPECT_TRUE(stat("unknown").isInteger) << "not in the vocabulary";
    EXPECT_TRUE(stat("odd").isInteger) << "malformed value type";

    ASSERT_EQ(read(), 0);
    EXPECT_TRUE(stat("load").isInteger) << "without a vocabulary";
    EXPECT_EQ(stat("load").current.integer, 5);
}

TEST_F(QelMonitorDataTest, CounterHasSameFormInAllInstances) {
    putHead();
    named(at, subsystem, "cpu", [&] {
        for (const char* const each : {"cpu0", "cpu1"})
            named(at, instance, each, [&] { putCounter(at, "load", "0.5"); });
    });
    EXPECT_EQ(read(), -1) << "the values are not integers";
    ASSERT_EQ(read(vocabularyOf({{"load", "0"}})), 0);
    EXPECT_EQ(report.data["cpu"]["cpu1"]["load"].current.real, 0.5);
}

TEST_F(QelMonitorDataTest, WritesEachCounterInItsOwnForm) {
    QelPerfStat& real = report.data["cpu"]["cpu0"]["load"];
    real.isInteger = false;
    real.current.real = 0.5;
    report.data["cpu"]["cpu0"]["bytes"].current.integer = 6;
    ASSERT_EQ(at.putObj(report, 0), 0);
    for (const int element : {subsystem, instance, counter})
        ASSERT_EQ(at.seek(element), 0);
    EXPECT_EQ(childValue(at, 1026), "bytes");
    EXPECT_EQ(at.seek(1018), 0);
    EXPECT_EQ(childValue(at, 1065), "6");
    at.seekUp();
    EXPECT_EQ(at.nextSibling(counter), 0);
    EXPECT_EQ(at.seek(1018), 0);
    EXPECT_EQ(childValue(at, 1065), "0.5");
}

TEST_F(QelMonitorDataTest, RejectedPartFailsWriteButNotOtherParts) {
    report.eid = eid;
    report.data["cpu"]["cpu0"]["load"].current.integer = 5;
    constexpr int name = 1026;
    for (const int rejected : {1866, name}) {
        const TestMessage written;
        ScriptedCursor cursor(written.cursor(), fails(ScriptedCursor::Operation::put, {rejected}));
        EXPECT_NE(cursor.putObj(report, 0), 0) << rejected;
        EXPECT_THAT(childIDs(written.cursor()), ElementsAre(1866, 1086, subsystem)) << rejected;
        EXPECT_EQ(childValue(written.cursor(), 1866).empty(), rejected == 1866);
    }
}

TEST_F(QelMonitorDataTest, AcceptsReportWithoutData) {
    putHead();
    EXPECT_EQ(read(), 0);
    EXPECT_THAT(report.data, IsEmpty());
}

TEST_F(QelMonitorDataTest, AcceptsEmptyLevels) {
    putHead();
    named(at, subsystem, "empty", [] {});
    named(at, subsystem, "half", [&] { named(at, instance, "empty", [] {}); });
    putCounters({{"load", "5"}});
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(stat("load").current.integer, 5);
    EXPECT_EQ(report.data.size(), 1U);
}

TEST_F(QelMonitorDataTest, RequiresEnvironmentAndInterval) {
    at.putObj(interval, 1086);
    putCounters({{"load", "5"}});
    expectFailure("no readable identifier of the environment");
    at.putObj(eid, 1866);
    at.deleteChild(1086);
    expectFailure("no readable interval");
    EXPECT_EQ(report.eid, eid);
}

TEST_F(QelMonitorDataTest, RejectsSubsystemOrInstanceWithoutName) {
    putHead();
    named(at, subsystem, nullptr, [&] { named(at, instance, "cpu0", [&] { putCounter(at, "load", "5"); }); });
    putCounters({{"load", "5"}});
    expectFailure("a subsystem has no name");
    EXPECT_EQ(report.data[""]["cpu0"]["load"].current.integer, 5) << "the descent to the first counter completes";
    EXPECT_FALSE(report.data.contains("cpu"));

    at.deleteChild(subsystem);
    at.deleteChild(subsystem);
    named(at, subsystem, "cpu", [&] { named(at, instance, nullptr, [&] { putCounter(at, "load", "5"); }); });
    expectFailure("an instance has no name");
}

TEST_F(QelMonitorDataTest, CounterWithoutNameEndsItsInstanceOnly) {
    putHead();
    named(at, subsystem, "cpu", [&] {
        named(at, instance, "cpu0", [&] {
            putCounter(at, "before", "1");
            putCounter(at, nullptr, "2");
            putCounter(at, "after", "3");
        });
        named(at, instance, "cpu1", [&] { putCounter(at, "next", "4"); });
    });
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(report.data["cpu"]["cpu0"].size(), 1U);
    EXPECT_EQ(stat("before").current.integer, 1);
    EXPECT_EQ(report.data["cpu"]["cpu1"]["next"].current.integer, 4);
}

TEST_F(QelMonitorDataTest, MalformedCounterEndsReport) {
    putHead();
    putCounters({{"good", "1"}, {"bad", "text"}, {"after", "3"}});
    named(at, subsystem, "net", [] {});
    expectFailure("cpu / cpu0 / bad has no readable values");
    EXPECT_EQ(stat("good").current.integer, 1);
    EXPECT_FALSE(report.data["cpu"]["cpu0"].contains("after"));
}

TEST_F(QelMonitorDataTest, RejectsCounterWithoutValues) {
    putHead();
    named(at, subsystem, "cpu", [&] { named(at, instance, "cpu0", [&] { named(at, counter, "load", [] {}); }); });
    expectFailure("cpu / cpu0 / load has no readable values");
}

TEST_F(QelMonitorDataTest, LooksUpEachCounterOnce) {
    putHead();
    named(at, subsystem, "cpu", [&] {
        for (int i = 0; i < 100; ++i)
            named(at, instance, std::to_string(i).c_str(), [&] { putCounter(at, "load", "5"); });
    });
    const QelVocMapSP vocabulary = vocabularyOf({{"load", "1"}});
    const auto cost = [&](const QelVocMapSP& used) { return allocationsOf([&] { EXPECT_EQ(read(used), 0); }); };
    const std::size_t asking = allocationsOf([&] { EXPECT_TRUE(vocabulary->isFeatureEnabled("load")); });
    EXPECT_LE(cost(vocabulary), cost({}) + asking);
}

} // namespace
} // namespace Qel
