#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelMessage.h"
#include "qel/Console.h"

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

/// Writes to a file or standard output.  A regular file appears or changes all at once; pipes and devices are written
/// as they are.  ExitCode::failed, and an error, if that can't be done; then an old file is as it was.
[[nodiscard]] ExitCode writeContent(const std::string& name, std::string_view content, const Console& console);

/// The same with a message in text form.
[[nodiscard]] ExitCode writeMessage(const std::string& name, const QelMessage& message, const Console& console);

} // namespace Qel::Tool
