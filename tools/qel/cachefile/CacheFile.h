#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "qel/cli/ExitCode.h"

namespace Qel::Tool {

/// Reads a cache file into memory: a private copy, made under the file lock that the writers take, so that it shows one
/// state.  The file is only read, and stays as it is when it's no cache file.
///
/// ExitCode::badInput, and what is wrong in `error`, if the file is missing, was never formatted or is no cache file;
/// ExitCode::failed if it can't be locked or read.
[[nodiscard]] ExitCode readCacheFile(const std::string& path, std::vector<std::byte>& bytes, std::string& error);

/// Whether a process that attaches to the file would make a new cache of it: it isn't there, or was never formatted.
[[nodiscard]] bool isFreshCacheFile(const std::string& path);

} // namespace Qel::Tool
