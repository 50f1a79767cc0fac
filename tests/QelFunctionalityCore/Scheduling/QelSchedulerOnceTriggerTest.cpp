#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"

#include <gtest/gtest.h>

#include "TriggerResult.h"

namespace Qel {

namespace {

TEST(QelSchedulerOnceTriggerTest, RunsAtStartOnly) {
    const QelSchedulerOnceTrigger trigger(1000, qelNoTime);
    EXPECT_EQ(nextRun(trigger, 0), runAt(1000));
    EXPECT_EQ(nextRun(trigger, 999), runAt(1000));
    EXPECT_EQ(nextRun(trigger, 1000), noMoreRuns) << "a run at the given time is not the next";
    EXPECT_EQ(nextRun(trigger, 1001), noMoreRuns);
}

TEST(QelSchedulerOnceTriggerTest, IgnoresEnd) {
    EXPECT_EQ(nextRun(QelSchedulerOnceTrigger(1000, 500), 700), runAt(1000));
}

TEST(QelSchedulerOnceTriggerTest, RejectsNegativeTime) {
    EXPECT_EQ(nextRun(QelSchedulerOnceTrigger(1000, qelNoTime), -1), failure);
}

} // namespace

} // namespace Qel
