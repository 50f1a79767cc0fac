#pragma once

#include <string>

#include <sys/types.h>

namespace Qel::Tool {

/// Like openat(2), but confines the resolution of `path` to the directory.  Returns a descriptor, or -1 with the reason
/// in errno.  EXDEV: the path escapes the directory through ".." or a symbolic link, or a symbolic link has an absolute
/// target.  Leading slashes in `path` itself are ignored.
///
/// The confinement is free of races: if another process replaces a directory or a link during the call, the old or the
/// new object is resolved, but never one outside the directory.
///
/// `mode` is ignored without O_CREAT.  O_NOFOLLOW and O_DIRECTORY are not supported.
[[nodiscard]] int openBeneath(int directory, const std::string& path, int flags, mode_t mode);

/// The two implementations of openBeneath().  openBeneathInKernel() uses openat2(2); it fails with ENOSYS before Linux
/// 5.6 and with EPERM under some seccomp filters.  openBeneathByComponents() always works, but needs at least one
/// system call for each path component.
[[nodiscard]] int openBeneathInKernel(int directory, const std::string& path, int flags, mode_t mode);
[[nodiscard]] int openBeneathByComponents(int directory, const std::string& path, int flags, mode_t mode);

} // namespace Qel::Tool
