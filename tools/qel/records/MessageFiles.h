#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelFileLock.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageFile.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

/// The file name that stands for standard input or output.
inline constexpr std::string_view standardStream = "-";

/// How messages call a file.
[[nodiscard]] std::string shownName(const std::string& name);

/// The whole message in text form; nonzero, with an error message, if it is beyond what a message may be.
[[nodiscard]] int toText(const QelMessage& message, std::string& text);

/// Whether there is no file of this name, so that a command may start one.
[[nodiscard]] bool isMissing(const std::string& name);

/// Reads a message, text or binary as its first bytes tell, from a file or standard input.  ExitCode::badInput, and an
/// error that names the place, if it can't be read or is malformed; then `message` is as it was.
[[nodiscard]] ExitCode readMessage(const std::string& name, QelMessage& message, const Console& console);

/// Whether both names lead to one existing file.
[[nodiscard]] bool areOneFile(const std::string& one, const std::string& other);

/// Waits for the lock of a file that a command reads, changes and replaces, unless it is a standard stream.
/// ExitCode::failed, and an error, if the file can't be locked.
[[nodiscard]] ExitCode lockFile(const std::string& name, QelFileLock& lock, const Console& console);

/// Writes to a file, as QelMessageFile::replace() does, or to standard output.  ExitCode::failed, and an error, if that
/// can't be done.
[[nodiscard]] ExitCode writeContent(const std::string& name, std::string_view content, const Console& console,
                                    QelMessageFile::NewFile created = QelMessageFile::NewFile::ownerOnly);

/// The same with a message in text form.
[[nodiscard]] ExitCode writeMessage(const std::string& name, const QelMessage& message, const Console& console);

} // namespace Qel::Tool
