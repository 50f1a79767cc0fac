#pragma once

#include <set>

#include "QelFunctionalityCore/Scheduling/QelSchedulerDuration.h"

namespace Qel {

/// The run days of what is left of a week, from the day of a start time up to and including the coming Sunday, each at
/// the start's time of day.
///
/// The run on the Sunday reaches to the midnight that ends it.  A start on a Sunday has that day alone, whose run then
/// reaches over the whole following week.
class QelSchedulerWeekDuration : public QelSchedulerPeriodDuration {
public:
    /// Week days count from 0 for Sunday to 6 for Saturday; other numbers are no run days.
    QelSchedulerWeekDuration(std::int64_t start, const std::set<int>& weekDays);

private:
    void addDays(const std::set<int>& weekDays);
};

} // namespace Qel
