#pragma once

#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// Formats a message for the user, as printf does, and stores it as the last error message of the calling thread.
QEL_EXPORT void setErrorMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// The last error message of the calling thread; empty if none was set since the last clearErrorMessage().
QEL_EXPORT [[nodiscard]] const std::string& getErrorMessage();

/// Clears the last error message of the calling thread.
QEL_EXPORT void clearErrorMessage();

} // namespace Qel
