#pragma once

#include <string>
#include <vector>

#include "qel/cli/Console.h"

namespace Qel::Tool {

/// Runs the command that `arguments`, without the program's name, ask for.  Every error is told on the error stream;
/// the output stream is flushed, and one that can't be written makes the run fail.
[[nodiscard]] ExitCode runCommandLine(const std::vector<std::string>& arguments, const Console& console);

} // namespace Qel::Tool
