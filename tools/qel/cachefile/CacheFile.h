#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "qel/cli/ExitCode.h"

namespace Qel::Tool {

/// Reads a cache file into memory.  The copy is made under the writers' file lock, so it is consistent.  The file is
/// opened read-only.
///
/// Returns ExitCode::badInput if the file is missing, was never formatted or is not a cache file, and ExitCode::failed
/// if it cannot be locked or read; `error` then holds the reason.
[[nodiscard]] ExitCode readCacheFile(const std::string& path, std::vector<std::byte>& bytes, std::string& error);

/// True if the file is missing or was never formatted, so that the first process to attach creates a new cache in it.
[[nodiscard]] bool isFreshCacheFile(const std::string& path);

} // namespace Qel::Tool
