#pragma once

#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDuration.h"

namespace Qel {

/// The run days of the rest of a week, from the day of a start time up to and including the next Sunday, each at the
/// start's time of day.
///
/// The run on the Sunday extends to the midnight at the end of that day.  If the start is a Sunday, it is the only day,
/// and its run extends over the whole following week.
class QEL_EXPORT QelSchedulerWeekDuration : public QelSchedulerPeriodDuration {
public:
    /// Week days are 0 for Sunday to 6 for Saturday; other numbers are ignored.
    QelSchedulerWeekDuration(std::int64_t start, const std::set<int>& weekDays);

private:
    void addDays(const std::set<int>& weekDays);
};

} // namespace Qel
