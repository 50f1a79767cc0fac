#pragma once

#include <string>
#include <string_view>

/// Whole files.  A failure is nonzero, with an error message that names the path and the reason.
namespace Qel::QelMessageFile {

/// Reads a file that isn't larger than a message may be.  `content` changes on success only.
[[nodiscard]] int read(const std::string& path, std::string& content);

/// Puts a file with this content in place of `path`.  It is written beside it under another name and takes its place
/// when it is complete and on the disk, so that no reader ever meets half a file and a failure leaves the old one.  The
/// new file has the old one's permissions.
[[nodiscard]] int replace(const std::string& path, std::string_view content);

} // namespace Qel::QelMessageFile
