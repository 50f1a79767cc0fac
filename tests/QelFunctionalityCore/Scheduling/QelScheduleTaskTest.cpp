#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::SizeIs;

using SchedulingRecordTest = RecordTest;

class QelSchedulerTriggerTest : public SchedulingRecordTest {};

TEST_F(QelSchedulerTriggerTest, RoundTripsStartAndEnd) {
    const auto back = roundTrip(QelSchedulerOnceTrigger(1'700'000'000, 1'700'003'600));
    EXPECT_EQ(back.start, 1'700'000'000);
    EXPECT_EQ(back.end, 1'700'003'600);
    EXPECT_THAT(childIDs(message), ElementsAre(1063, 1064));
    EXPECT_EQ(childValue(message, 1063), "2023-11-14T22:13:20Z");
}

TEST_F(QelSchedulerTriggerTest, RejectsMissingStart) {
    message.putValueTime(5, 1064);
    QelSchedulerOnceTrigger trigger;
    EXPECT_EQ(read(trigger), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("element start_time (start) is missing"));
}

TEST_F(QelSchedulerTriggerTest, OmitsUnsetEndAndReadsItAsUnset) {
    ASSERT_EQ(write(QelSchedulerOnceTrigger(5, qelNoTime)), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1063));
    QelSchedulerOnceTrigger trigger(1, 2);
    EXPECT_EQ(read(trigger), 0);
    EXPECT_EQ(trigger.start, 5);
    EXPECT_EQ(trigger.end, qelNoTime) << "resets a previous end";
}

TEST_F(QelSchedulerTriggerTest, MalformedEndReadsAsUnset) {
    message.putValueTime(5, 1063);
    message.putValue("never", 1064);
    QelSchedulerOnceTrigger trigger(1, 2);
    EXPECT_EQ(read(trigger), 0);
    EXPECT_EQ(trigger.start, 5);
    EXPECT_EQ(trigger.end, qelNoTime);
}

TEST_F(QelSchedulerTriggerTest, NegativeStartFailsWrite) {
    for (const long start : {-1L, -2L}) {
        EXPECT_EQ(write(QelSchedulerOnceTrigger(start, 7)), -1);
        EXPECT_THAT(childIDs(message), IsEmpty());
    }
    EXPECT_EQ(write(QelSchedulerOnceTrigger()), -1) << "no start";
    EXPECT_EQ(write(QelSchedulerOnceTrigger(0, 7)), 0);
}

TEST_F(QelSchedulerTriggerTest, AcceptsEndBeforeEpoch) {
    EXPECT_EQ(roundTrip(QelSchedulerOnceTrigger(5, -2)).end, -2);
}

class QelSchedulerDailyTriggerRecordTest : public SchedulingRecordTest {};

TEST_F(QelSchedulerDailyTriggerRecordTest, RoundTripsFieldsAfterBase) {
    QelSchedulerDailyTrigger trigger(5, 9);
    trigger.interval = 3;
    trigger.weekdaysOnly = trigger.weekendsOnly = true;
    const QelSchedulerDailyTrigger back = roundTrip(trigger);
    EXPECT_EQ(back.interval, trigger.interval);
    EXPECT_TRUE(back.weekdaysOnly);
    EXPECT_TRUE(back.weekendsOnly);
    EXPECT_THAT(childIDs(message), ElementsAre(1063, 1064, 2095, 2096, 2097));
    EXPECT_EQ(childValue(message, 2096), "") << "the flag is encoded by presence";
}

TEST_F(QelSchedulerDailyTriggerRecordTest, WritesOnlySetFields) {
    const QelSchedulerDailyTrigger back = roundTrip(QelSchedulerDailyTrigger(5, qelNoTime));
    EXPECT_FALSE(back.interval.isSpecified());
    EXPECT_FALSE(back.weekdaysOnly);
    EXPECT_FALSE(back.weekendsOnly);
    EXPECT_THAT(childIDs(message), ElementsAre(1063));
}

TEST_F(QelSchedulerDailyTriggerRecordTest, MalformedIntervalIsUnspecified) {
    message.putValueTime(5, 1063);
    message.putValue("often", 2095);
    QelSchedulerDailyTrigger trigger;
    EXPECT_EQ(read(trigger), 0);
    EXPECT_FALSE(trigger.interval.isSpecified());
}

TEST_F(QelSchedulerDailyTriggerRecordTest, BaseFailureFailsRecord) {
    QelSchedulerDailyTrigger trigger;
    EXPECT_EQ(read(trigger), -1);
    EXPECT_EQ(write(QelSchedulerDailyTrigger(-1, 5)), -1);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

template <class Trigger> Trigger sample();

template <> QelSchedulerWeeklyTrigger sample() {
    QelSchedulerWeeklyTrigger trigger(5, 9);
    trigger.weeks = 60; // the reader does not check the range
    trigger.days = {7, 0, 3};
    return trigger;
}

template <> QelSchedulerMonthlyTrigger sample() {
    QelSchedulerMonthlyTrigger trigger(5, 9);
    trigger.days = {32, 1};
    trigger.months = {12, 2};
    return trigger;
}

template <> QelSchedulerMonthlyDayOfWeekTrigger sample() {
    QelSchedulerMonthlyDayOfWeekTrigger trigger(5, 9);
    trigger.weekDays = {1};
    trigger.weekNumbers = {6, 1};
    trigger.months = {12};
    return trigger;
}

class QelSchedulerSetTriggerRecordTest : public SchedulingRecordTest {
protected:
    /// Checks that a record with a missing or malformed field is rejected.
    template <class Trigger> void expectRequired(int id) {
        ASSERT_EQ(write(sample<Trigger>()), 0);
        replace(id, "x");
        Trigger trigger;
        EXPECT_EQ(read(trigger), -1) << id;
        message.deleteChild(id);
        EXPECT_EQ(read(trigger), -1) << id;
        while (message.firstChild() == 0)
            message.deleteFromChild();
    }
};

TEST_F(QelSchedulerSetTriggerRecordTest, RoundTripsWeeklyTrigger) {
    const auto back = roundTrip(sample<QelSchedulerWeeklyTrigger>());
    EXPECT_EQ(back.weeks, 60);
    EXPECT_THAT(back.days, ElementsAre(0, 3, 7));
    EXPECT_THAT(childIDs(message), ElementsAre(1063, 1064, 2098, 1995, 1995, 1995));
}

TEST_F(QelSchedulerSetTriggerRecordTest, RoundTripsMonthlyTrigger) {
    const auto back = roundTrip(sample<QelSchedulerMonthlyTrigger>());
    EXPECT_THAT(back.days, ElementsAre(1, 32));
    EXPECT_THAT(back.months, ElementsAre(2, 12));
    EXPECT_THAT(childIDs(message), ElementsAre(1063, 1064, 2099, 2099, 2100, 2100));
}

TEST_F(QelSchedulerSetTriggerRecordTest, RoundTripsMonthlyDayOfWeekTrigger) {
    const auto back = roundTrip(sample<QelSchedulerMonthlyDayOfWeekTrigger>());
    EXPECT_THAT(back.weekDays, ElementsAre(1));
    EXPECT_THAT(back.weekNumbers, ElementsAre(1, 6));
    EXPECT_THAT(back.months, ElementsAre(12));
    EXPECT_THAT(childIDs(message), ElementsAre(1063, 1064, 1995, 2101, 2101, 2100));
}

TEST_F(QelSchedulerSetTriggerRecordTest, RequiresEveryField) {
    for (const int id : {1063, 2098, 1995})
        expectRequired<QelSchedulerWeeklyTrigger>(id);
    for (const int id : {1063, 2099, 2100})
        expectRequired<QelSchedulerMonthlyTrigger>(id);
    for (const int id : {1063, 1995, 2101, 2100})
        expectRequired<QelSchedulerMonthlyDayOfWeekTrigger>(id);
}

TEST_F(QelSchedulerSetTriggerRecordTest, EmptySetWritesNothingAndCannotBeRead) {
    QelSchedulerWeeklyTrigger trigger(5, qelNoTime);
    EXPECT_EQ(write(trigger), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1063, 2098));
    EXPECT_EQ(read(trigger), -1);
}

boost::shared_ptr<QelSchedulerTrigger> once(long start) {
    return boost::shared_ptr<QelSchedulerTrigger>(new QelSchedulerOnceTrigger(start, qelNoTime));
}

class QelScheduleTaskTest : public SchedulingRecordTest {
protected:
    static QelScheduleTask sampleTask() {
        QelScheduleTask task;
        task.taskName = "nightly";
        task.triggers = {once(5)};
        return task;
    }
};

TEST_F(QelScheduleTaskTest, RoundTripsAllFields) {
    QelScheduleTask task = sampleTask();
    task.id.generate();
    task.description = std::string("every\0night", 11);
    task.category = "backup";
    task.taskTime = 99;
    task.disabled = true;
    const QelScheduleTask back = roundTrip(task);
    EXPECT_EQ(back.id, task.id);
    EXPECT_EQ(back.taskName, task.taskName);
    EXPECT_EQ(back.description, task.description);
    EXPECT_EQ(back.category, "backup");
    EXPECT_EQ(back.taskTime, 99);
    EXPECT_EQ(back.disabled, task.disabled);
    ASSERT_THAT(back.triggers, SizeIs(1));
    EXPECT_EQ(back.triggers.front()->start, 5);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 2092, 1496, 1264, 2093, 2001, 1705));
    EXPECT_EQ(childValue(message, 2092), "bmlnaHRseQ==");
    EXPECT_EQ(childValue(message, 1264), "backup");
    EXPECT_EQ(childValue(message, 1705), "1");
}

TEST_F(QelScheduleTaskTest, OmitsUnsetFields) {
    QelScheduleTask task;
    EXPECT_EQ(write(task), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
    EXPECT_EQ(read(task), -1) << "a task without triggers cannot be read";
}

TEST_F(QelScheduleTaskTest, WritesSpecifiedEnabledState) {
    QelScheduleTask task = sampleTask();
    task.disabled = false;
    EXPECT_EQ(roundTrip(task).disabled, task.disabled);
    EXPECT_EQ(childValue(message, 1705), "0");
}

TEST_F(QelScheduleTaskTest, RoundTripsTriggersOfEachClass) {
    QelScheduleTask task;
    task.triggers = {
        once(1), boost::shared_ptr<QelSchedulerTrigger>(new QelSchedulerDailyTrigger(2, qelNoTime)),
        boost::shared_ptr<QelSchedulerTrigger>(new QelSchedulerWeeklyTrigger(sample<QelSchedulerWeeklyTrigger>())),
        boost::shared_ptr<QelSchedulerTrigger>(new QelSchedulerMonthlyTrigger(sample<QelSchedulerMonthlyTrigger>())),
        boost::shared_ptr<QelSchedulerTrigger>(
            new QelSchedulerMonthlyDayOfWeekTrigger(sample<QelSchedulerMonthlyDayOfWeekTrigger>()))};
    const QelScheduleTask back = roundTrip(task);
    ASSERT_THAT(back.triggers, SizeIs(5));
    auto trigger = back.triggers.begin();
    EXPECT_THAT(dynamic_cast<QelSchedulerOnceTrigger*>((trigger++)->get()), NotNull());
    EXPECT_THAT(dynamic_cast<QelSchedulerDailyTrigger*>((trigger++)->get()), NotNull());
    EXPECT_THAT(dynamic_cast<QelSchedulerWeeklyTrigger*>((trigger++)->get()), NotNull());
    EXPECT_THAT(dynamic_cast<QelSchedulerMonthlyTrigger*>((trigger++)->get()), NotNull());
    EXPECT_THAT(dynamic_cast<QelSchedulerMonthlyDayOfWeekTrigger*>((trigger++)->get()), NotNull());

    std::vector<std::string> types;
    ASSERT_EQ(message.seek(2093), 0);
    ASSERT_EQ(message.firstChild(2094), 0);
    do
        types.push_back(message.curType());
    while (message.nextSibling(2094) == 0);
    EXPECT_THAT(types, ElementsAre("scheduler:once_trigger", "scheduler:daily_trigger", "scheduler:weekly_trigger",
                                   "scheduler:monthly_trigger", "scheduler:monthly_day_of_week_trigger"));
}

TEST_F(QelScheduleTaskTest, RequiresTriggers) {
    QelScheduleTask task;
    EXPECT_EQ(read(task), -1);
    message.newChild(2093);
    message.seekUp();
    EXPECT_EQ(read(task), -1) << "empty wrapper";
    EXPECT_THAT(getErrorMessage(), HasSubstr("element triggers (triggers)"));
}

TEST_F(QelScheduleTaskTest, RejectsMalformedTriggerOrUnknownClass) {
    ASSERT_EQ(write(sampleTask()), 0);
    message.seek(2093);
    message.newChild(2094);
    message.putValueTime(5, 1063);
    message.seekUp();
    message.seekUp();
    QelScheduleTask task;
    EXPECT_EQ(read(task), -1) << "missing class";
    message.seek(2093);
    message.seek(2094);
    message.deleteChild(1063);
    message.seekUp();
    message.seekUp();
    EXPECT_EQ(read(task), -1) << "missing start";
}

TEST_F(QelScheduleTaskTest, UnwritableTriggerFailsTask) {
    QelScheduleTask task;
    task.triggers = {once(-3)};
    EXPECT_EQ(write(task), -1);
    task.triggers = {boost::shared_ptr<QelSchedulerTrigger>()};
    EXPECT_EQ(write(task), -1) << "null trigger";
}

TEST_F(QelScheduleTaskTest, MalformedOptionalFieldsKeepDefaults) {
    ASSERT_EQ(write(sampleTask()), 0);
    for (const int id : {1010, 2092, 1496, 2001, 1705})
        replace(id, "?");
    QelScheduleTask task;
    EXPECT_EQ(read(task), 0);
    EXPECT_FALSE(task.id.isValid());
    EXPECT_THAT(task.taskName, IsEmpty());
    EXPECT_THAT(task.description, IsEmpty());
    EXPECT_EQ(task.taskTime, qelNoTime);
    EXPECT_FALSE(task.disabled.isSpecified());
}

TEST_F(QelScheduleTaskTest, RewritesDerivedTriggerByNameOfBase) {
    const QelRecordType* const type = findRecordType("QelSchedulerTrigger");
    ASSERT_THAT(type, NotNull());
    ASSERT_EQ(message.putObject(sample<QelSchedulerMonthlyTrigger>(), QelSchedulerMonthlyTrigger::Writer(), 0), 0);
    TestMessage other;
    const auto results = type->rewrite(message, other.cursor());
    EXPECT_EQ(results.read, 0);
    EXPECT_EQ(results.write, 0);
    EXPECT_EQ(other.cursor().curType(), "scheduler:monthly_trigger");
    EXPECT_EQ(childIDs(other.cursor()), childIDs(message));
}

} // namespace

} // namespace Qel
