#include "qel/env/CacheAccess.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "qel/cachefile/CacheFile.h"
#include "qel/cachefile/CacheFileChecker.h"
#include "qel/cli/SignalGuard.h"

namespace Qel::Tool {

namespace {

ExitCode checkFile(const std::string& path, const Console& console) {
    std::vector<std::byte> bytes;
    std::string error;
    if (const ExitCode code = readCacheFile(path, bytes, error); code != ExitCode::success)
        return console.fail(code, error);
    const Findings findings = checkCacheFile(bytes).findings;
    const auto harmful = std::find_if(findings.begin(), findings.end(), affectsListing);
    if (harmful == findings.end())
        return ExitCode::success;
    return console.fail(ExitCode::badInput, path + ": the file is damaged; see `qel cache check`: offset " +
                                                std::to_string(harmful->offset) + ": " + harmful->text);
}

} // namespace

ExitCode openCache(const std::string& path, CacheUse use, const Console& console, QelEnvCacheSP& cache) {
    if (use != CacheUse::mayCreate || !isFreshCacheFile(path)) {
        if (const ExitCode code = checkFile(path, console); code != ExitCode::success)
            return code;
    }
    const SignalGuard guard;
    QelEnvCacheSP opened(new QelEnvCache(path));
    // Do not mark the file as unusable if attaching fails.
    constexpr bool invalidate = false;
    errno = 0;
    if (const int result = opened->initialize(true, invalidate)) {
        const std::string reason = errno != 0 ? std::string(": ") + std::strerror(errno) : "";
        return console.fail(ExitCode::failed, path + ": " + describeCacheResult(result) + reason);
    }
    cache = opened;
    return ExitCode::success;
}

std::string describeCacheResult(int result) {
    switch (result) {
    case cacheNotMapped:
        return "cannot map the file";
    case cacheItemTooLarge:
        return "record exceeds the limit of " + std::to_string(QelEnvCache::maxRecordSize) + " bytes";
    case cacheKeyExists:
        return "already in the cache";
    case cacheKeyMissing:
        return "not in the cache";
    case cacheNotLocked:
        return "cannot lock the file";
    case cacheOutOfSpace:
        return "the file is full and cannot grow";
    default:
        return "cache error " + std::to_string(result);
    }
}

} // namespace Qel::Tool
