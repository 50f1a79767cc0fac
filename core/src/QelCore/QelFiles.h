#pragma once

#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// Removes the file `path`.  Returns 0 if it is removed or does not exist; otherwise -1 with the error message set.
QEL_EXPORT int removeFile(const std::string& path);

/// Result of inspectCacheFile().
enum class eCacheFileKind {
    missing,     ///< no such file
    unformatted, ///< empty or with an all-zero header: attaching would format it
    cache,       ///< a cache of the current format
    foreign,     ///< anything else: attaching would fail or damage it
    unreadable,  ///< exists but cannot be read or is not a regular file; the error message is set
};

/// Classifies the file `path` by its header without locking or modifying it, for callers that must not create a file,
/// format it or mark it as unusable.
[[nodiscard]] eCacheFileKind inspectCacheFile(const std::string& path);

/// Removes a cache file after attaching to it failed with `code`.  Does nothing if `code` is success.  Checks under the
/// file lock that the file is still unusable, because another process may have replaced it concurrently.  Returns 0 if
/// the unusable file is gone or has been replaced; otherwise -1 with the error message set.
QEL_EXPORT int removeLockedCacheFile(const char* path, int code);

} // namespace Qel
