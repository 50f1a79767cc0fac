#pragma once

#include <string>
#include <vector>

#include <boost/program_options/option.hpp>

#include "QelMessage/QelFileLock.h"
#include "qel/cli/Console.h"
#include "qel/cli/Options.h"

namespace Qel::Tool {

/// The options and arguments of a command line; an argument is an option with an empty name.
using OptionSet = std::vector<boost::program_options::option>;

/// Adds `--options` and `--save-options`, common to all commands.
void addOptionSetOptions(Options& options);

/// Locks the options file, waiting if necessary, if `--options` and `--save-options` name one file.
[[nodiscard]] ExitCode lockOptions(const OptionSet& given, QelFileLock& lock, const Console& console);

/// Adds the contents of the file given by `--options`, if any, to `given`.  An option on the command line overrides the
/// one in the file; so do arguments, as a whole.  Reports an error and returns ExitCode::badInput if the file cannot be
/// read, or contains an option that is not in `known`, or `--options` or `--save-options`: loading a file must not
/// cause another file to be written.
[[nodiscard]] ExitCode loadOptions(OptionSet& given, const Options& known, const Console& console);

/// Saves `given`, without `--options` and `--save-options`, to the file given by `--save-options`, if any.
[[nodiscard]] ExitCode saveOptions(const OptionSet& given, const Console& console);

} // namespace Qel::Tool
