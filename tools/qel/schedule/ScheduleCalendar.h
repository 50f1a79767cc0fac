#pragma once

#include <chrono>
#include <iosfwd>
#include <set>

#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"

namespace Qel::Tool {

/// The local dates on which a task runs, from the first of a month on for so many months, as a caller finds them who
/// asks behind each run, and each day where there is no answer, or one that has passed.
[[nodiscard]] std::set<std::chrono::sys_days> findRunDays(const QelScheduleTask& task, std::chrono::year_month first,
                                                          int months);

/// Prints months with Monday as the first day of the week and the run days in brackets, in colour too if asked.
void printCalendar(std::ostream& out, std::chrono::year_month first, int months,
                   const std::set<std::chrono::sys_days>& runDays, bool inColour);

} // namespace Qel::Tool
