#pragma once

#include <string>

#include <sys/types.h>

#include "qel/cli/ExitCode.h"

namespace Qel::Tool {

/// The path of one end of a copy: any path, or one beneath a directory that it must not lead out of.
struct TransferPath {
    std::string given;     ///< as the user wrote it
    std::string name;      ///< the whole path
    std::string directory; ///< empty if the path may lead anywhere
    std::string beneath;   ///< the part of `name` that follows `directory`

    /// A descriptor, or -1 with the reason in errno; EXDEV if the path leads out of the directory.  Waits until it can
    /// be opened or an interruption is noted (see NotesInterruption), which leaves EINTR.
    [[nodiscard]] int open(int flags, mode_t mode = 0) const;
    /// Sets the error message after open() failed; `end` is the word for the end of the copy, "src" or "dst".  `code`,
    /// or badInput for a path that leads out of the directory.
    [[nodiscard]] ExitCode reportFailure(const char* end, ExitCode code) const;
};

} // namespace Qel::Tool
