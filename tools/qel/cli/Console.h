#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "qel/cli/ExitCode.h"

namespace Qel::Tool {

/// The standard streams of a run: those of the process, or string streams in tests.
struct Console {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;

    /// Writes "qel: MESSAGE" to the error stream on one line, with control characters escaped.  Returns `code`.
    ExitCode fail(ExitCode code, std::string_view message) const;
};

} // namespace Qel::Tool
