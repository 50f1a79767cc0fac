#pragma once

#include <string>
#include <vector>

#include "qel/cli/Console.h"

namespace Qel::Tool {

/// Runs the command in `arguments`, which exclude the program name.  Errors are reported on `console.err`.  Flushes
/// `console.out`; a failed write to it makes the run fail with ExitCode::failed.
[[nodiscard]] ExitCode runCommandLine(const std::vector<std::string>& arguments, const Console& console);

} // namespace Qel::Tool
