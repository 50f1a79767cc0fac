#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Whole files.  A failure is nonzero, with an error message that names the path and the reason.
namespace Qel::QelMessageFile {

/// Reads a file that isn't larger than a message may be.  `content` changes on success only.
[[nodiscard]] int read(const std::string& path, std::string& content);

/// Who may read and write a file that did not exist before.
enum class NewFile : std::uint8_t {
    ownerOnly,   ///< mode 0600: messages may contain passwords
    umaskAllows, ///< mode 0666 without the bits of the umask
};

/// Stores `content` in the file that `path` leads to; symbolic links are followed, dangling ones as well.
///
/// A regular file is written beside it under another name, to the disk, and then renamed: a reader never sees a part of
/// it, and a failure leaves the old file.  The new file has the permissions of the old one, and its owner and group
/// where the process may set them; otherwise the group bits are left out.  All of that is set before the first byte is
/// written. A file that the process may not write to, or that no one may, is refused.
///
/// Devices, pipes and open files of this process, as in /dev/stdout, are written to as they are.
[[nodiscard]] int replace(const std::string& path, std::string_view content, NewFile created = NewFile::ownerOnly);

} // namespace Qel::QelMessageFile
