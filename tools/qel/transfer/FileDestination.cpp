#include "qel/transfer/FileDestination.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "qel/cli/SignalGuard.h"

namespace Qel::Tool {

ExitCode FileDestination::open(const FileSource& source) {
    // No O_TRUNC: only the open file shows whether it is the source itself.
    int flags = O_WRONLY | O_CREAT | O_NOCTTY;
    if (m_start == Start::newFile)
        flags |= O_EXCL;
    if (m_start == Start::end)
        flags |= O_APPEND;
    m_file.emplace(m_path.open(flags, source.status().st_mode & 0777U));
    return m_file->isOpened() ? prepare(source) : failToOpen();
}

ExitCode FileDestination::prepare(const FileSource& source) {
    struct stat64 status {};
    if (fstat64(descriptor(), &status) != 0)
        return failToOpen();
    if (status.st_dev == source.status().st_dev && status.st_ino == source.status().st_ino) {
        setErrorMessage("'%s' and '%s' are the same file", source.name().c_str(), m_path.name.c_str());
        return ExitCode::badInput;
    }
    const bool isRegular = S_ISREG(status.st_mode);
    if (isRegular && m_start == Start::truncated && ftruncate64(descriptor(), 0) != 0)
        return failToOpen();
    m_isPositioned = isRegular && m_start != Start::end;
    return ExitCode::success;
}

int FileDestination::write(const FileSource::Piece& piece) {
    if (piece.data)
        return writeData(piece.data, piece.length);
    return m_isPositioned ? skip(piece.length) : writeZeros(piece.length);
}

int FileDestination::writeData(const char* data, long long length) {
    for (const long long end = m_written + length; m_written < end;) {
        // A signal during write(2) results in a short write.
        if (NotesInterruption::isInterrupted())
            return -1;
        const ssize_t count = ::write(descriptor(), data, static_cast<std::size_t>(end - m_written));
        if (count == 0)
            errno = ENOSPC; // POSIX does not define the meaning of a result of 0
        if (count > 0) {
            data += count;
            m_written += count;
        } else if (errno != EINTR) {
            return failToWrite();
        }
    }
    return 0;
}

int FileDestination::writeZeros(long long length) {
    static constexpr std::array<char, std::size_t{1} << 16U> zeros{};
    while (length > 0) {
        const long long part = std::min<long long>(length, zeros.size());
        if (writeData(zeros.data(), part) != 0)
            return -1;
        length -= part;
    }
    return 0;
}

int FileDestination::skip(long long length) {
    struct stat64 status {};
    if (fstat64(descriptor(), &status) != 0)
        return failToWrite();
    const long long end = m_written + length;
    // Punch a hole into the old content if the file system supports it.
    if (const long long old = std::min<long long>(status.st_size, end) - m_written;
        old > 0 && fallocate64(descriptor(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, m_written, old) != 0)
        return writeZeros(length);
    if ((status.st_size < end && ftruncate64(descriptor(), end) != 0) || lseek64(descriptor(), end, SEEK_SET) == -1)
        return failToWrite();
    m_written = end;
    return 0;
}

int FileDestination::finish() {
    if (struct stat64 status{}; m_isPositioned && fstat64(descriptor(), &status) == 0)
        m_kept = std::max<long long>(0, status.st_size - m_written);
    return m_file->close() == 0 ? 0 : failToWrite();
}

ExitCode FileDestination::failToOpen() const {
    return m_path.reportFailure("dst", ExitCode::failed);
}

int FileDestination::failToWrite() const {
    const int error = errno;
    setErrorMessage("Cannot write to file \"%s\": %s [%d]", m_path.name.c_str(), std::strerror(error), error);
    return -1;
}

} // namespace Qel::Tool
