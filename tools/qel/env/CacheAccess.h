#pragma once

#include <cstdint>
#include <string>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

enum class CacheUse : std::uint8_t {
    existing,  ///< the file must be a cache
    mayCreate, ///< a missing or unformatted file becomes a cache
};

/// Attaches to a cache file.
///
/// The file is checked first, because the library trusts its content: a damaged file could abort the process, and a
/// foreign file could be overwritten.  Findings that do not affect listings, such as leaked blocks, are ignored.
///
/// Returns ExitCode::badInput for a damaged or foreign file and ExitCode::failed if attaching fails, after printing an
/// error.
[[nodiscard]] ExitCode openCache(const std::string& path, CacheUse use, const Console& console, QelEnvCacheSP& cache);

/// Describes a nonzero result of a cache operation.
[[nodiscard]] std::string describeCacheResult(int result);

} // namespace Qel::Tool
