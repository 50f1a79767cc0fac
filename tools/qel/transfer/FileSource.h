#pragma once

#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "qel/cli/ExitCode.h"
#include "qel/transfer/TransferPath.h"

namespace Qel::Tool {

/// A regular file to read up to the end of file.  The reported size is not relied on: files in /proc report 0, files in
/// /sys report the page size.
class FileSource {
public:
    /// Bytes of the file, or a hole if `data` is null.  A length of 0 indicates the end of the file.
    struct Piece {
        const char* data = nullptr;
        long long length = 0;
    };

    explicit FileSource(const TransferPath& path) : m_path(path) {}

    /// Opens the file and reads the first piece, so that an unreadable file is rejected before the destination is
    /// modified.  Sets the error message on failure.
    [[nodiscard]] ExitCode open();
    /// Reads the next piece, which is valid until the next call.  Returns 0, or -1 with the error message set.
    [[nodiscard]] int next(Piece& piece);

    [[nodiscard]] const std::string& name() const { return m_path.name; }
    /// The file's status when it was opened.
    [[nodiscard]] const struct stat64& status() const { return m_status; }
    [[nodiscard]] long long size() const { return m_status.st_size; }

private:
    ExitCode openRegularFile();
    int nextPiece(Piece& piece);
    int readData(Piece& piece);
    int checkEnd() const;
    long long holeAhead();
    [[nodiscard]] long long currentSize() const;
    [[nodiscard]] int failToRead() const;

    TransferPath m_path;
    std::optional<QelFile> m_file;
    struct stat64 m_status {};
    bool m_isSparse = false;
    long long m_position = 0;
    long long m_endOfData = 0; ///< of a sparse file: no hole between the position and this offset
    std::unique_ptr<char[]> m_buffer;
    std::optional<Piece> m_first;
};

} // namespace Qel::Tool
