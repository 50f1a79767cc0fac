#pragma once

namespace Qel::Tool {

/// What the process answers to its caller.  Scripts rely on these numbers.
enum class ExitCode : int {
    success = 0,
    notSo = 1,    ///< what was asked about isn't so: no such environment, a damaged cache file
    usage = 2,    ///< the command line can't be understood
    badInput = 3, ///< a file or message is missing, malformed or foreign
    failed = 4,   ///< the operation itself failed, standard output that can't be written included
};

} // namespace Qel::Tool
