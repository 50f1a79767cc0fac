#pragma once

#include "qel/cli/Command.h"

namespace Qel::Tool {

/// Adds `--log-settings`, common to all commands.
void addLogOption(Options& options);

/// Applies the log settings of the agent configuration given by `--log-settings`, if any.  Reports an unreadable file
/// and returns ExitCode::badInput.
[[nodiscard]] ExitCode applyLogSettings(const Invocation& invocation, const Console& console);

} // namespace Qel::Tool
