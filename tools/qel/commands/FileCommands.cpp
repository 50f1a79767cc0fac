#include <array>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

#include "QelCommon/ControlCharacters.h"
#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Files/QelFilePathReader.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/cli/SignalGuard.h"
#include "qel/transfer/FileTransfer.h"
#include "qel/transfer/TransferPath.h"
#include "qel/transfer/TransferProgress.h"

namespace Qel::Tool {

namespace {

// --- paths

std::string quoted(const std::string& path) {
    return "'" + path + "'";
}

/// Resolves a path as the agent does for a message of the client `session`.
int readPath(const std::string& path, const std::string& session, std::string& resolved) {
    const auto_destroy<QelMessage> message(new QelBinary);
    if (message->create(0) != 0)
        return -1;
    message->setSession(session);
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    cursor->putValueBase64(path, getEmptyID());
    return QelFilePathReader()(*cursor, resolved);
}

/// Resolves a path that starts with the placeholder of the upload folder.  The library only substitutes the
/// placeholder; here, paths out of the folder are rejected.
ExitCode resolve(const std::string& given, const Invocation& invocation, const Console& console, TransferPath& path) {
    path = {.given = given, .name = given, .directory = {}, .beneath = {}};
    if (!given.starts_with(QelFilerBase::SESSION_DIR))
        return ExitCode::success;
    if (!invocation.has("session"))
        return console.fail(ExitCode::usage, quoted(given) + ": --session is required to locate the upload folder");
    if (readPath(std::string(QelFilerBase::SESSION_DIR), invocation.string("session"), path.directory) != 0)
        return console.fail(ExitCode::badInput, getErrorMessage());
    path.beneath = given.substr(QelFilerBase::SESSION_DIR.size());
    path.name = path.directory + path.beneath;
    // "$SESSION$x" would be a sibling of the folder whose name starts with the folder's name.
    if (!path.beneath.empty() && path.beneath.front() != '/')
        return console.fail(ExitCode::badInput, quoted(given) + " leads out of the upload folder");
    return ExitCode::success;
}

// --- qel file copy

void addCopyOptions(Options& options) {
    options.add(
        {.name = "overwrite", .help = "write to an existing file from its start; keep the bytes after the copy"});
    options.add({.name = "append", .help = "append to an existing file"});
    options.add({.name = "truncate", .help = "truncate an existing file"});
    options.add({.name = "session",
                 .value = "NAME",
                 .help = "client whose upload folder replaces $SESSION$ at the start of a path"});
}

/// The number of columns if the error stream is a terminal, or std::nullopt.
std::optional<std::size_t> terminalWidth(const Console& console) {
    constexpr std::size_t defaultWidth = 80;
    if (&console.err != &std::cerr || isatty(STDERR_FILENO) != 1)
        return std::nullopt;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : defaultWidth;
}

std::string bytes(long long count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

/// Copies the file and shows the progress on a terminal.
TransferResult copyWithProgress(FileSource& source, FileDestination& destination, const Console& console) {
    const std::optional<std::size_t> width = terminalWidth(console);
    std::optional<TransferProgress> progress;
    const TransferResult result = transfer(source, destination, [&](long long moved) {
        if (width && !progress)
            progress.emplace(console.err, source.size(), *width);
        if (progress)
            progress->show(moved);
        return !NotesInterruption::isInterrupted();
    });
    if (progress && result.end == TransferResult::End::complete)
        progress->complete();
    return result;
}

/// Reports a failure.  An interruption makes blocking calls fail with EINTR, so it takes precedence over their errors.
ExitCode failOrReportInterruption(ExitCode code, const std::string& details, const Console& console) {
    const bool isInterrupted = NotesInterruption::isInterrupted();
    return console.fail(isInterrupted ? ExitCode::failed : code,
                        (isInterrupted ? "interrupted" : getErrorMessage()) + details);
}

ExitCode reportResult(const TransferResult& result, const FileSource& source, const FileDestination& destination,
                      const Console& console) {
    using End = TransferResult::End;
    if (result.end == End::complete) {
        console.out << "copied " << bytes(result.moved) << " to " << showControls(quoted(destination.name()));
        if (destination.kept() > 0)
            console.out << ", keeping " << bytes(destination.kept()) << " after the copy";
        console.out << '\n';
        return ExitCode::success;
    }
    // The size reported for a file may be wrong, for example in /proc.
    const std::string total = result.moved < source.size() ? " of " + std::to_string(source.size()) : "";
    return failOrReportInterruption(result.end == End::sourceFailed ? ExitCode::badInput : ExitCode::failed,
                                    "; copied " + bytes(result.moved) + total + " to " + quoted(destination.name()),
                                    console);
}

FileDestination::Start startOf(const Invocation& invocation) {
    using Start = FileDestination::Start;
    if (invocation.has("append"))
        return Start::end;
    if (invocation.has("truncate"))
        return Start::truncated;
    return invocation.has("overwrite") ? Start::beginning : Start::newFile;
}

ExitCode runCopy(const Invocation& invocation, const Console& console) {
    if (invocation.has("append") && invocation.has("truncate"))
        return console.fail(ExitCode::usage, "options '--append' and '--truncate' cannot be used together");
    std::array<TransferPath, 2> paths;
    for (std::size_t i = 0; i < paths.size(); ++i)
        if (const ExitCode code = resolve(invocation.arguments[i], invocation, console, paths[i]);
            code != ExitCode::success)
            return code;

    const NotesInterruption notes;
    FileSource source(paths[0]);
    FileDestination destination(paths[1], startOf(invocation));
    ExitCode code = source.open();
    if (code == ExitCode::success)
        code = destination.open(source);
    if (code != ExitCode::success)
        return failOrReportInterruption(code, "", console);
    return reportResult(copyWithProgress(source, destination, console), source, destination, console);
}

} // namespace

CommandGroup fileCommands() {
    static constexpr std::array commands{
        Command{"copy", "SRC DST", "Copy a file in blocks, preserving holes", addCopyOptions, runCopy},
    };
    return {"file", "File copies", commands};
}

} // namespace Qel::Tool
