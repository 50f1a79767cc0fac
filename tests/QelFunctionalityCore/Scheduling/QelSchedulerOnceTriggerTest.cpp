#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"

#include <gtest/gtest.h>

#include "TriggerAnswer.h"

namespace Qel {

namespace {

TEST(QelSchedulerOnceTriggerTest, RunsAtTheStartAndNeverAgain) {
    const QelSchedulerOnceTrigger trigger(1000, qelNoTime);
    EXPECT_EQ(ask(trigger, 0), runAt(1000));
    EXPECT_EQ(ask(trigger, 999), runAt(1000));
    EXPECT_EQ(ask(trigger, 1000), noMoreRuns) << "a run at the very time isn't the next";
    EXPECT_EQ(ask(trigger, 1001), noMoreRuns);
}

TEST(QelSchedulerOnceTriggerTest, TheEndHasNoMeaning) {
    EXPECT_EQ(ask(QelSchedulerOnceTrigger(1000, 500), 700), runAt(1000));
}

TEST(QelSchedulerOnceTriggerTest, ANegativeTimeHasNoAnswer) {
    EXPECT_EQ(ask(QelSchedulerOnceTrigger(1000, qelNoTime), -1), noAnswer);
}

} // namespace

} // namespace Qel
