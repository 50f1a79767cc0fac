#pragma once

#include <string>
#include <vector>

#include <boost/program_options/option.hpp>

#include "QelMessage/QelFileLock.h"
#include "qel/cli/Console.h"
#include "qel/cli/Options.h"

namespace Qel::Tool {

/// The options and the arguments of a command line, arguments being options without a name.
using OptionSet = std::vector<boost::program_options::option>;

/// Adds `--options` and `--save-options`, which every command has.
void addOptionSetOptions(Options& options);

/// Waits for the lock of the file if `--options` and `--save-options` name the same one.
[[nodiscard]] ExitCode lockOptions(const OptionSet& given, QelFileLock& lock, const Console& console);

/// Adds what the file after `--options` holds, if `given` names one: of each option, and of the arguments, what is
/// given goes before what is loaded.  ExitCode::badInput, and an error, if the file can't be read or has an option that
/// isn't in `known`, or one of these two: a file must not cause another to be written.
[[nodiscard]] ExitCode loadOptions(OptionSet& given, const Options& known, const Console& console);

/// Puts the set into the file after `--save-options`, if it names one, all but these two options themselves.
[[nodiscard]] ExitCode saveOptions(const OptionSet& given, const Console& console);

} // namespace Qel::Tool
