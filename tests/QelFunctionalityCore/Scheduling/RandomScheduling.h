#pragma once

#include "support/RandomFills.h"

namespace Qel::TestSupport {

inline RandomFamily randomScheduling() {
    return {
        .withoutTable{
            {"QelSchedulerTrigger",
             oneOf({"QelSchedulerOnceTrigger", "QelSchedulerDailyTrigger", "QelSchedulerWeeklyTrigger",
                    "QelSchedulerMonthlyTrigger", "QelSchedulerMonthlyDayOfWeekTrigger"})},
        },
        .fields{
            {{"QelSchedulerTrigger", 1063}, timeIn(1063)},
            {{"QelSchedulerTrigger", 1064}, timeIn(1064)},
        },
    };
}

} // namespace Qel::TestSupport
