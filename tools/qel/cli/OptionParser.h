#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "qel/cli/Command.h"
#include "qel/cli/OptionSets.h"
#include "qel/cli/Options.h"

namespace Qel::Tool {

/// Splits a command line into options and arguments.  Returns what is wrong with it, or nothing.
[[nodiscard]] std::optional<std::string> parseWords(const std::vector<std::string>& words, const Options& options,
                                                    OptionSet& given);

/// Checks the values and adds the defaults.  Returns what is wrong, or nothing.  A required option may be missing where
/// help is asked for.
[[nodiscard]] std::optional<std::string> makeInvocation(const OptionSet& given, const Options& options,
                                                        Invocation& invocation);

/// Prints what the help says about the options.
void printOptions(std::ostream& out, const Options& options);

} // namespace Qel::Tool
