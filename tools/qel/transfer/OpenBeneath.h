#pragma once

#include <string>

#include <sys/types.h>

namespace Qel::Tool {

/// Opens a path that must not lead out of a directory, as openat(2) with the result of its resolution checked by the
/// kernel: a descriptor, or -1 with the reason in errno.  EXDEV: the path leads out, by "..", by a symbolic link, or
/// because the target of a link is absolute.  A leading slash in `path` itself does not count.
///
/// There is no window between a check and the open: a directory or link that another process replaces during the call
/// is either resolved in its old or in its new form, and never outside.
///
/// `mode` counts only with O_CREAT.  O_NOFOLLOW and O_DIRECTORY are not supported.
[[nodiscard]] int openBeneath(int directory, const std::string& path, int flags, mode_t mode);

/// The two ways in which openBeneath() does this.  The first fails with ENOSYS before Linux 5.6, and with EPERM under
/// some filters of system calls.  The second works everywhere, with a system call for each component.
[[nodiscard]] int openBeneathInKernel(int directory, const std::string& path, int flags, mode_t mode);
[[nodiscard]] int openBeneathByComponents(int directory, const std::string& path, int flags, mode_t mode);

} // namespace Qel::Tool
