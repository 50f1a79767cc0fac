#pragma once

#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "qel/cli/ExitCode.h"
#include "qel/transfer/TransferPath.h"

namespace Qel::Tool {

/// A regular file that is read from its start to its end, wherever that is: the files of /proc report a size of 0,
/// those of /sys one of a page.
class FileSource {
public:
    /// Bytes of the file, or a hole if `data` is null.  No length is the end of the file.
    struct Piece {
        const char* data = nullptr;
        long long length = 0;
    };

    explicit FileSource(const TransferPath& path) : m_path(path) {}

    /// Opens the file and reads the first piece, so that a file that cannot be read is refused before the destination
    /// is touched.  Anything but success sets the error message.
    [[nodiscard]] ExitCode open();
    /// The next piece, which lasts until the next call.  0, or -1 with the error message set.
    [[nodiscard]] int next(Piece& piece);

    [[nodiscard]] const std::string& name() const { return m_path.name; }
    /// Of the file at the time when it was opened.
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
    long long m_endOfData = 0; ///< of a sparse file: there is no hole from the position to here
    std::unique_ptr<char[]> m_buffer;
    std::optional<Piece> m_first;
};

} // namespace Qel::Tool
