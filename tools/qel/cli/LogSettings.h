#pragma once

#include "qel/cli/Command.h"

namespace Qel::Tool {

/// Adds `--log-settings`, which every command has.
void addLogOption(Options& options);

/// Makes the process log as the configuration after `--log-settings` says, if the option is there.
/// ExitCode::badInput, and an error, if it can't be read.
[[nodiscard]] ExitCode applyLogSettings(const Invocation& invocation, const Console& console);

} // namespace Qel::Tool
