#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "QelCommon/Export.h"

/// Reads and writes whole files. Functions return nonzero on failure, with an error message that contains the path and
/// the reason.
namespace Qel::QelMessageFile {

/// Reads a file of at most QelLimits::messageBytes. `content` changes on success only.
QEL_EXPORT [[nodiscard]] int read(const std::string& path, std::string& content);

/// Permissions of a file that did not exist before.
enum class NewFile : std::uint8_t {
    ownerOnly,   ///< mode 0600: messages may contain passwords
    umaskAllows, ///< mode 0666 without the bits of the umask
};

/// Stores `content` in the file that `path` resolves to. Symbolic links are followed, including dangling ones.
///
/// A regular file is replaced atomically: temporary file in the same directory, fsync, rename. A reader never sees a
/// partial file, and a failure leaves the old file unchanged. The new file has the permissions of the old one, and its
/// owner and group if the process may set them; otherwise the group permissions are removed. All attributes are set
/// before the first byte is written. A file that the process may not write to, or that has no write permission at all,
/// is rejected.
///
/// Devices, pipes and open files of this process, as in /dev/stdout, are written to directly.
QEL_EXPORT [[nodiscard]] int replace(const std::string& path, std::string_view content,
                                     NewFile created = NewFile::ownerOnly);

} // namespace Qel::QelMessageFile
