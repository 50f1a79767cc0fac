#pragma once

#include <string>

namespace Qel {

/// Yields the processor to other threads and processes.
void schedYield() noexcept;

/// The title of this process: its command line as in /proc/self/cmdline, arguments separated by blanks.
[[nodiscard]] std::string getproctitle();

} // namespace Qel
