#pragma once

#include <iosfwd>

#include "qel/host/HostReport.h"

namespace Qel::Tool {

/// Prints the parts of a report that there are, each as a table under a heading.
void printReport(std::ostream& out, const HostReport& report);

} // namespace Qel::Tool
