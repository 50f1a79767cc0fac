#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Files/QelFilePathReader.h"
#include "QelMessage/QelBinary.h"
#include "qel/Command.h"
#include "qel/FileTransfer.h"
#include "qel/SignalGuard.h"
#include "qel/TransferProgress.h"

namespace Qel::Tool {

namespace {

namespace fs = std::filesystem;

// --- paths

std::string inQuotes(const std::string& path) {
    return "'" + path + "'";
}

/// A path as the agent reads it from a message of the client `session`.
int readPath(const std::string& path, const std::string& session, std::string& resolved) {
    const auto_destroy<QelMessage> message(new QelBinary);
    if (message->create(0) != 0)
        return -1;
    message->setSession(session);
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    cursor->putValueBase64(path, getEmptyID());
    return QelFilePathReader()(*cursor, resolved);
}

/// Whether `path` is `folder` or leads to something in it, `..` and symbolic links followed.
bool isWithin(const std::string& path, const std::string& folder) {
    std::error_code error;
    const fs::path outer = fs::canonical(folder, error);
    if (error)
        return false;
    const fs::path inner = fs::weakly_canonical(path, error);
    if (error)
        return false;
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

/// Puts the upload folder into a path that begins with its word.  The library does so with the text and looks no
/// further; here nobody gets out of the folder.
ExitCode resolve(std::string& path, const Invocation& invocation, const Console& console) {
    if (!path.starts_with(QelFilerBase::SESSION_DIR))
        return ExitCode::success;
    if (!invocation.has("session"))
        return console.fail(ExitCode::usage, inQuotes(path) + ": --session tells whose upload folder is meant");
    const std::string session = invocation.text("session");
    std::string folder;
    std::string resolved;
    if (readPath(std::string(QelFilerBase::SESSION_DIR), session, folder) != 0 ||
        readPath(path, session, resolved) != 0)
        return console.fail(ExitCode::badInput, getErrorMessage());
    if (!isWithin(resolved, folder))
        return console.fail(ExitCode::badInput, inQuotes(path) + " leads out of the upload folder");
    path = resolved;
    return ExitCode::success;
}

// --- qel file copy

void addCopyOptions(Options& options) {
    options.add({.name = "overwrite", .help = "write to a file that exists, from its start; what it has behind stays"});
    options.add({.name = "append", .help = "write to a file that exists, at its end"});
    options.add({.name = "truncate", .help = "write to a file that exists, and drop what it holds"});
    options.add({.name = "session",
                 .value = "NAME",
                 .help = "the client whose upload folder $SESSION$ at the start of a path stands for"});
}

/// A terminal on the error stream: the number of its columns.
std::optional<std::size_t> terminalWidth(const Console& console) {
    constexpr std::size_t usual = 80;
    if (&console.err != &std::cerr || isatty(STDERR_FILENO) != 1)
        return std::nullopt;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

/// What a copy of this file is created with: the permissions that it has and the umask leaves.
QelSecurityAttributes attributesOf(const struct stat64& source) {
    const mode_t mask = umask(0);
    umask(mask);
    QelSecurityAttributes attributes;
    attributes.mode = static_cast<int>(source.st_mode & 0777U & ~mask);
    return attributes;
}

/// What speaks against reading this file; nothing too if it can't be found, since opening it tells that better.
ExitCode checkSource(const std::string& source, const std::string& destination, struct stat64& status,
                     const Console& console) {
    if (stat64(source.c_str(), &status) != 0)
        return ExitCode::success;
    if (S_ISDIR(status.st_mode))
        return console.fail(ExitCode::badInput, inQuotes(source) + " is a directory");
    if (!S_ISREG(status.st_mode))
        return console.fail(ExitCode::badInput, inQuotes(source) + " is not a regular file");
    std::error_code ignored;
    if (fs::equivalent(source, destination, ignored))
        return console.fail(ExitCode::badInput, inQuotes(source) + " and " + inQuotes(destination) + " are one file");
    return ExitCode::success;
}

std::string bytes(long long count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

/// Moves the file, with progress on a terminal.
TransferResult copyWatched(QelFileUploadFromFile& upload, QelFileDownloadToFile& download, const Console& console) {
    const std::optional<std::size_t> width = terminalWidth(console);
    std::optional<TransferProgress> progress;
    return transfer(upload, download, [&](long long moved) {
        if (width && !progress)
            progress.emplace(console.err, upload.size, *width);
        if (progress)
            progress->show(moved);
        return !NotesInterruption::isInterrupted();
    });
}

/// The bytes of a file behind what was written to its start; 0 where there is no such thing.
long long bytesBehind(long long offset, long long written, const std::string& destination) {
    struct stat64 status {};
    if (offset != 0 || stat64(destination.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return 0;
    return status.st_size - written;
}

/// Why a source gave no more.
std::string reasonOfSource(const QelFileUploadFromFile& upload, const TransferResult& result) {
    struct stat64 status {};
    if (result.isBegun && stat64(upload.src.c_str(), &status) == 0 && status.st_size <= result.moved)
        return inQuotes(upload.src) + " became shorter while it was read";
    return getErrorMessage();
}

ExitCode tellResult(const TransferResult& result, const QelFileUploadFromFile& upload,
                    const QelFileDownloadToFile& download, const Console& console) {
    using End = TransferResult::End;
    const std::string& destination = download.dst;
    if (result.end == End::complete) {
        console.out << "copied " << bytes(result.moved) << " to " << inQuotes(destination);
        if (const long long behind = bytesBehind(download.offset, result.moved, destination); behind > 0)
            console.out << ", which keeps " << bytes(behind) << " behind them";
        console.out << '\n';
        return ExitCode::success;
    }
    // An interruption can show as a failure of the call that waited.
    std::string text = NotesInterruption::isInterrupted() ? "interrupted"
                       : result.end == End::sourceFailed  ? reasonOfSource(upload, result)
                                                          : getErrorMessage();
    if (result.isBegun)
        text += "; " + bytes(result.moved) + " of " + std::to_string(upload.size) + " are in " + inQuotes(destination);
    const bool isSource = result.end == End::sourceFailed && !NotesInterruption::isInterrupted();
    return console.fail(isSource ? ExitCode::badInput : ExitCode::failed, text);
}

ExitCode runCopy(const Invocation& invocation, const Console& console) {
    if (invocation.has("append") && invocation.has("truncate"))
        return console.fail(ExitCode::usage, "--append and --truncate exclude each other");
    std::string source = invocation.arguments[0];
    std::string destination = invocation.arguments[1];
    for (std::string* const path : {&source, &destination})
        if (const ExitCode code = resolve(*path, invocation, console); code != ExitCode::success)
            return code;

    struct stat64 status {};
    if (const ExitCode code = checkSource(source, destination, status, console); code != ExitCode::success)
        return code;
    const QelSecurityAttributes attributes = attributesOf(status);
    const bool append = invocation.has("append");
    const bool truncate = invocation.has("truncate");
    const long long offset = append ? QelFile::appendOffset : truncate ? QelFile::truncateOffset : 0;
    const bool mayExist = append || truncate || invocation.has("overwrite");

    const NotesInterruption notes;
    QelFileUploadFromFile upload(source, destination, QelFileInfo::unknownSize, 0);
    QelFileDownloadToFile download(source, destination, upload.size, offset,
                                   QelFilerOptions(mayExist ? QelFilerOptions::overwrite : 0U), &attributes);
    const TransferResult result = copyWatched(upload, download, console);
    return tellResult(result, upload, download, console);
}

} // namespace

CommandGroup fileCommands() {
    static constexpr std::array commands{
        Command{"copy", "SRC DST", "Copies a file in blocks, as it goes from one agent to another.", addCopyOptions,
                runCopy},
    };
    return {"file", "Files on their way between agents.", commands};
}

} // namespace Qel::Tool
