#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelFileLock.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageFile.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

/// The file name that denotes standard input or output.
inline constexpr std::string_view standardStream = "-";

/// The file's name in error messages.
[[nodiscard]] std::string shownName(const std::string& name);

/// Converts a message to text form.  Returns nonzero and sets the error message if the message exceeds a limit.
[[nodiscard]] int toText(const QelMessage& message, std::string& text);

/// True if no file of this name exists, so that a command may create it.
[[nodiscard]] bool isMissing(const std::string& name);

/// Reads a message from a file or standard input; text or binary form is detected from the first bytes.  Returns
/// ExitCode::badInput if the message cannot be read or is malformed, after printing an error with the position;
/// `message` is then unchanged.
[[nodiscard]] ExitCode readMessage(const std::string& name, QelMessage& message, const Console& console);

/// True if both names refer to the same existing file.
[[nodiscard]] bool areSameFile(const std::string& one, const std::string& other);

/// Acquires the lock of a file for a read-modify-write; blocks until the lock is available.  Does nothing for a
/// standard stream.  Returns ExitCode::failed after printing an error if the file cannot be locked.
[[nodiscard]] ExitCode lockFile(const std::string& name, QelFileLock& lock, const Console& console);

/// Replaces a file with QelMessageFile::replace(), or writes to standard output.  Returns ExitCode::failed after
/// printing an error if that fails.
[[nodiscard]] ExitCode writeContent(const std::string& name, std::string_view content, const Console& console,
                                    QelMessageFile::NewFile created = QelMessageFile::NewFile::ownerOnly);

/// Writes a message in text form, as writeContent() does.
[[nodiscard]] ExitCode writeMessage(const std::string& name, const QelMessage& message, const Console& console);

} // namespace Qel::Tool
