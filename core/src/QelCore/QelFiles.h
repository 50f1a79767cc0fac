#pragma once

#include <string>

namespace Qel {

/// Removes the file `path`.  0 also when there is none; otherwise -1, with the reason as the error message.
int removeFile(const std::string& path);

/// What stands in the place of a cache file.
enum class eCacheFileKind {
    missing,     ///< no such file
    unformatted, ///< empty, or zeros where the header belongs: attaching would format it
    cache,       ///< a cache of the present format
    foreign,     ///< anything else: attaching would fail, or damage it
    unreadable,  ///< the file is there and can't be read, or isn't a regular file; the error message says why
};

/// Looks at the header of the file `path` without taking its lock and without changing anything: for those who must not
/// create a file, format it or mark it as unusable.
[[nodiscard]] eCacheFileKind inspectCacheFile(const std::string& path);

/// Removes a cache file that a process could not attach to, `code` being the result it got.  That happens under the
/// file's lock, and only while the file is still unusable: another process may have put a new one in its place
/// meanwhile. 0 when the unusable file is gone; otherwise -1, with the reason as the error message.
int removeLockedCacheFile(const char* path, int code);

} // namespace Qel
