#pragma once

#include <cstdint>
#include <string>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

enum class CacheUse : std::uint8_t {
    existing,  ///< the file has to be a cache
    mayCreate, ///< a file that isn't there or was never formatted becomes one
};

/// Attaches to a cache file.
///
/// The file is checked first: the library trusts what is in the file, and a damaged or foreign one would end the
/// process or be written into.  Findings that leave every listing right, such as leaked blocks, are let pass.
///
/// ExitCode::badInput for such a file, ExitCode::failed if it can't be attached to; each with an error.
[[nodiscard]] ExitCode openCache(const std::string& path, CacheUse use, const Console& console, QelEnvCacheSP& cache);

/// What a result of the cache's operations, other than 0, means.
[[nodiscard]] std::string describeCacheResult(int result);

} // namespace Qel::Tool
