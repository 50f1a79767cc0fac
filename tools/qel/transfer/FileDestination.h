#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "qel/cli/ExitCode.h"
#include "qel/transfer/FileSource.h"
#include "qel/transfer/TransferPath.h"

namespace Qel::Tool {

/// A file, device or pipe to write to, from a given start position.
class FileDestination {
public:
    enum class Start : std::uint8_t { newFile, beginning, end, truncated };

    FileDestination(const TransferPath& path, Start start) : m_path(path), m_start(start) {}

    /// Opens the file, or creates it with the permissions of the source, modified by the umask.  The set-user-ID,
    /// set-group-ID and sticky bits are not copied.  On failure it sets the error message and leaves an existing file
    /// unchanged.
    [[nodiscard]] ExitCode open(const FileSource& source);

    /// Writes a piece.  Returns 0, or -1 with the error message set or an interruption noted; the bytes already written
    /// remain in the file.
    ///
    /// A hole is preserved in a regular file, except when appending: no system call appends a hole atomically, and a
    /// sequence of calls could destroy data that another process appends concurrently.
    [[nodiscard]] int write(const FileSource::Piece& piece);
    /// Closes the file.  Returns 0, or -1 with the error message set: some file systems report write errors only on
    /// close.
    [[nodiscard]] int finish();

    [[nodiscard]] const std::string& name() const { return m_path.name; }
    [[nodiscard]] int descriptor() const { return m_file ? m_file->descriptor() : -1; }
    /// Number of bytes copied from the source, including holes.
    [[nodiscard]] long long written() const { return m_written; }
    /// After finish(): number of bytes of old content after the copied bytes.
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
