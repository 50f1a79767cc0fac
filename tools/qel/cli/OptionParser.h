#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "qel/cli/Command.h"
#include "qel/cli/OptionSets.h"
#include "qel/cli/Options.h"

namespace Qel::Tool {

/// Splits a command line into options and arguments.  Returns an error message, or std::nullopt on success.
[[nodiscard]] std::optional<std::string> parseWords(const std::vector<std::string>& words, const Options& options,
                                                    OptionSet& given);

/// Validates the option values and adds the defaults.  Returns an error message, or std::nullopt on success.  Required
/// options may be missing if `--help` is given.
[[nodiscard]] std::optional<std::string> makeInvocation(const OptionSet& given, const Options& options,
                                                        Invocation& invocation);

/// Prints the option list of a help page.
void printOptions(std::ostream& out, const Options& options);

} // namespace Qel::Tool
