#pragma once

#include <string>

namespace Qel {

/// Lets other threads and processes run before the caller goes on.
void schedYield() noexcept;

/// The title of this process: its command line as the kernel shows it, words separated by blanks.
[[nodiscard]] std::string getproctitle();

} // namespace Qel
