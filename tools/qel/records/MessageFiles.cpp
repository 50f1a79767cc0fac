#include "qel/records/MessageFiles.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <istream>
#include <limits>
#include <memory>
#include <ostream>

#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelLimits.h"

namespace Qel::Tool {

namespace {

/// Reads a stream to its end, but stops after exceeding the maximum length of a message.
std::string readAll(std::istream& in) {
    std::string content;
    std::array<char, 65536> part{};
    while (in && content.size() <= QelLimits::messageBytes) {
        in.read(part.data(), part.size());
        content.append(part.data(), static_cast<std::size_t>(in.gcount()));
    }
    return content;
}

/// Reads a file or standard input.
ExitCode readContent(const std::string& name, std::string& content, const Console& console) {
    if (name != standardStream)
        return QelMessageFile::read(name, content) == 0 ? ExitCode::success
                                                        : console.fail(ExitCode::badInput, getErrorMessage());
    content = readAll(console.in);
    if (console.in.bad())
        return console.fail(ExitCode::badInput, "cannot read standard input");
    if (content.size() > QelLimits::messageBytes)
        return console.fail(ExitCode::badInput,
                            "standard input: longer than " + std::to_string(QelLimits::messageBytes) + " bytes");
    return ExitCode::success;
}

int parse(const std::string& content, QelMessage& message) {
    static_assert(QelLimits::messageBytes <= std::numeric_limits<int>::max());
    if (QelBinary::looksBinary(content))
        return message.fromBinary(content.data(), static_cast<int>(content.size()));
    // The parser takes a C string, so the content after a null byte would be dropped silently.
    if (const auto zero = content.find('\0'); zero != std::string::npos) {
        setErrorMessage("byte %zu: null byte in a text message", zero);
        return -1;
    }
    constexpr int anyVersion = 0;
    return message.fromTextEx(content.c_str(), anyVersion);
}

} // namespace

std::string shownName(const std::string& name) {
    return name == standardStream ? "standard input" : name;
}

int toText(const QelMessage& message, std::string& text) {
    const std::unique_ptr<char, decltype(&std::free)> buffer(message.toTextEx(0, "", 0), &std::free);
    if (!buffer)
        return -1;
    text = buffer.get();
    return 0;
}

bool isMissing(const std::string& name) {
    return name != standardStream && access(name.c_str(), F_OK) != 0 && errno == ENOENT;
}

ExitCode readMessage(const std::string& name, QelMessage& message, const Console& console) {
    std::string content;
    if (const ExitCode code = readContent(name, content, console); code != ExitCode::success)
        return code;
    const int result = parse(content, message);
    if (result == 0)
        return ExitCode::success;
    const ExitCode code = result == QelMessage::outOfMemory ? ExitCode::failed : ExitCode::badInput;
    return console.fail(code, shownName(name) + ": " + getErrorMessage());
}

bool areSameFile(const std::string& one, const std::string& other) {
    std::error_code error;
    return one != standardStream && other != standardStream && std::filesystem::equivalent(one, other, error);
}

ExitCode lockFile(const std::string& name, QelFileLock& lock, const Console& console) {
    if (name == standardStream || lock.acquire(name) == 0)
        return ExitCode::success;
    return console.fail(ExitCode::failed, getErrorMessage());
}

ExitCode writeContent(const std::string& name, std::string_view content, const Console& console,
                      QelMessageFile::NewFile created) {
    if (name == standardStream) {
        // A write error is reported when the stream is flushed at exit.
        console.out << content;
        return ExitCode::success;
    }
    if (QelMessageFile::replace(name, content, created) != 0)
        return console.fail(ExitCode::failed, getErrorMessage());
    return ExitCode::success;
}

ExitCode writeMessage(const std::string& name, const QelMessage& message, const Console& console) {
    std::string text;
    if (toText(message, text) != 0)
        return console.fail(ExitCode::failed, shownName(name) + ": " + getErrorMessage());
    return writeContent(name, text, console);
}

} // namespace Qel::Tool
