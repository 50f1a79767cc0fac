#pragma once

#include <chrono>
#include <iosfwd>
#include <set>

#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"

namespace Qel::Tool {

/// The local dates on which a task runs, in `months` months from `first`.
///
/// The runs are found by asking for the next run after each run.  If a trigger returns none, or one that is not later,
/// the search continues one day later.
[[nodiscard]] std::set<std::chrono::sys_days> findRunDays(const QelScheduleTask& task, std::chrono::year_month first,
                                                          int months);

/// Prints a calendar.  Weeks start on Monday; run days are bracketed, and highlighted with `inColour`.
void printCalendar(std::ostream& out, std::chrono::year_month first, int months,
                   const std::set<std::chrono::sys_days>& runDays, bool inColour);

} // namespace Qel::Tool
