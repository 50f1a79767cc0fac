#include "QelFunctionalityCore/Scheduling/QelSchedulerDuration.h"

#include <limits>

#include <gmock/gmock.h>

namespace Qel {

namespace {

constexpr std::int64_t lastTime = std::numeric_limits<std::int64_t>::max();

TEST(QelSchedulerDurationTest, SpanIsValidAndEndsAfterItsLength) {
    const QelSchedulerDuration span(100, 20);
    EXPECT_EQ(span.begin, 100);
    EXPECT_EQ(span.end, 120);
    EXPECT_TRUE(span.isValid());
}

TEST(QelSchedulerDurationTest, InvalidStateIsCopied) {
    QelSchedulerDuration span(100, 20);
    span.setInvalid();
    const QelSchedulerDuration copy = span;
    EXPECT_FALSE(copy.isValid());
    EXPECT_EQ(copy.end, 120);
}

TEST(QelSchedulerDurationTest, SpanThatOverflowsIsInvalid) {
    EXPECT_TRUE(QelSchedulerDuration(lastTime - 20, 20).isValid());
    EXPECT_FALSE(QelSchedulerDuration(lastTime - 19, 20).isValid());
}

TEST(QelSchedulerDayDurationTest, SortingByDayGreaterIsAscending) {
    const QelSchedulerDayDuration early(10, 1, 5);
    const QelSchedulerDayDuration late(20, 2, 5);
    EXPECT_TRUE(QelSchedulerDayDuration::dayGreater(early, late));
    EXPECT_FALSE(QelSchedulerDayDuration::dayGreater(late, early));
    EXPECT_FALSE(QelSchedulerDayDuration::dayGreater(early, early));
}

class QelSchedulerPeriodDurationTest : public testing::Test {
protected:
    struct Period : QelSchedulerPeriodDuration {
        Period() : QelSchedulerPeriodDuration(0, 1000) {
            days = {{300, 3, 10}, {100, 1, 900}, {200, 2, 10}};
            finish();
        }
    };
    const Period period;
};

TEST_F(QelSchedulerPeriodDurationTest, ExtendsFromFirstBeginToEndOfLastDay) {
    EXPECT_EQ(period.begin, 100);
    EXPECT_EQ(period.end, 310) << "although another day ends at 1000";
}

TEST_F(QelSchedulerPeriodDurationTest, NextRunBeforeBeginIsBegin) {
    EXPECT_EQ(period.getNextRunTime(-5), 100);
    EXPECT_EQ(period.getNextRunTime(99), 100);
}

TEST_F(QelSchedulerPeriodDurationTest, RunAtGivenTimeIsNotNext) {
    EXPECT_EQ(period.getNextRunTime(100), 200);
    EXPECT_EQ(period.getNextRunTime(199), 200);
    EXPECT_EQ(period.getNextRunTime(200), 300);
}

TEST_F(QelSchedulerPeriodDurationTest, ReturnsEndWithoutRunsLeft) {
    EXPECT_EQ(period.getNextRunTime(300), 310);
    EXPECT_EQ(period.getNextRunTime(310), 310);
}

TEST_F(QelSchedulerPeriodDurationTest, ReturnsEndEvenIfItHasPassed) {
    EXPECT_EQ(period.getNextRunTime(311), 310);
    EXPECT_EQ(period.getNextRunTime(lastTime), 310);
}

} // namespace

} // namespace Qel
