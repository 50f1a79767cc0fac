#pragma once

#include <iosfwd>

#include "qel/host/HostReport.h"

namespace Qel::Tool {

/// Prints the available parts of a report, each as a table with a heading.
void printReport(std::ostream& out, const HostReport& report);

} // namespace Qel::Tool
