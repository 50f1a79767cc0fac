#pragma once

#include <string>

namespace Qel {

/// Stores a text for the user, as of printf, as the calling thread's last error message.
void setErrorMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// The calling thread's last error message; empty if there was none since it was cleared.
[[nodiscard]] const std::string& getErrorMessage();

/// Forgets the calling thread's last error message.
void clearErrorMessage();

} // namespace Qel
