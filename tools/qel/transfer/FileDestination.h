#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "qel/cli/ExitCode.h"
#include "qel/transfer/FileSource.h"
#include "qel/transfer/TransferPath.h"

namespace Qel::Tool {

/// A file, device or pipe that is written from some position on.
class FileDestination {
public:
    enum class Start : std::uint8_t { newFile, beginning, end, truncated };

    FileDestination(const TransferPath& path, Start start) : m_path(path), m_start(start) {}

    /// Opens the file, or creates it with the permissions of the source that the umask leaves; set-user-ID and the like
    /// are not copied.  Anything but success sets the error message, and leaves an existing file unchanged.
    [[nodiscard]] ExitCode open(const FileSource& source);

    /// Writes a piece.  0, or -1 with the error message set, or with an interruption noted; what could be written stays
    /// in the file.
    ///
    /// A hole becomes a hole in a regular file, except at the end of a file that is appended to: there is no system
    /// call that appends a hole, and any sequence of calls could drop what another process appends at that moment.
    [[nodiscard]] int write(const FileSource::Piece& piece);
    /// Closes the file.  0, or -1 with the error message set: some file systems report only now that the bytes could
    /// not be stored.
    [[nodiscard]] int finish();

    [[nodiscard]] const std::string& name() const { return m_path.name; }
    [[nodiscard]] int descriptor() const { return m_file ? m_file->descriptor() : -1; }
    /// Bytes of the source that are in the file, holes included.
    [[nodiscard]] long long written() const { return m_written; }
    /// After finish(): bytes of the old content that follow the new one.
    [[nodiscard]] long long kept() const { return m_kept; }

private:
    ExitCode prepare(const FileSource& source);
    int writeData(const char* data, long long length);
    int writeZeros(long long length);
    int skip(long long length);
    [[nodiscard]] ExitCode failToOpen() const;
    [[nodiscard]] int failToWrite() const;

    TransferPath m_path;
    Start m_start;
    std::optional<QelFile> m_file;
    bool m_isPositioned = false; ///< a regular file, written at the offset m_written
    long long m_written = 0;
    long long m_kept = 0;
};

} // namespace Qel::Tool
