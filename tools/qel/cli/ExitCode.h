#pragma once

namespace Qel::Tool {

/// The exit status of the process.  The numbers are part of the interface; scripts test them.
enum class ExitCode : int {
    success = 0,
    negative = 1, ///< negative result: environment not found, cache file damaged
    usage = 2,    ///< invalid command line
    badInput = 3, ///< an input file or message is missing, malformed or of another kind
    failed = 4,   ///< the operation failed, or standard output cannot be written
};

} // namespace Qel::Tool
