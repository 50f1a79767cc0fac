#pragma once

#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// Yields the processor to other threads and processes.
void schedYield() noexcept;

/// The title of this process: its command line as in /proc/self/cmdline, arguments separated by blanks.
QEL_EXPORT [[nodiscard]] std::string getproctitle();

} // namespace Qel
