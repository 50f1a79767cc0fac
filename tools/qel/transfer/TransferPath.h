#pragma once

#include <string>

#include <sys/types.h>

#include "qel/cli/ExitCode.h"

namespace Qel::Tool {

/// The path of the source or destination of a copy, optionally confined to a directory.
struct TransferPath {
    std::string given;     ///< as specified by the user
    std::string name;      ///< the full path
    std::string directory; ///< empty if the path is not confined
    std::string beneath;   ///< the part of `name` after `directory`

    /// Returns a descriptor, or -1 with the reason in errno; EXDEV if the path escapes the directory.  A blocking open
    /// is retried after a signal, unless an interruption was noted (see NotesInterruption); errno is then EINTR.
    [[nodiscard]] int open(int flags, mode_t mode = 0) const;
    /// Sets the error message after open() failed; `end` is "src" or "dst".  Returns `code`, or badInput if the path
    /// escapes the directory.
    [[nodiscard]] ExitCode reportFailure(const char* end, ExitCode code) const;
};

} // namespace Qel::Tool
