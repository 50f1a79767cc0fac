#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "qel/cli/ExitCode.h"

namespace Qel::Tool {

/// The three streams of a run: the process's own, or a test's.
struct Console {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;

    /// Writes "qel: TEXT" to the error stream, on one line and with its control characters escaped.  Returns `code`.
    ExitCode fail(ExitCode code, std::string_view text) const;
};

} // namespace Qel::Tool
