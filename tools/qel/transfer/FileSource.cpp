#include "qel/transfer/FileSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"
#include "qel/cli/SignalGuard.h"

namespace Qel::Tool {

namespace {

constexpr long long blockSize = QelFileInfo::maxBlockSize;
/// Longer holes are split, so that progress is updated and interruptions are checked in between.
constexpr long long longestHole = 128 * blockSize;

ExitCode requireRegular(const struct stat64& status, const std::string& name) {
    if (S_ISREG(status.st_mode))
        return ExitCode::success;
    setErrorMessage(S_ISDIR(status.st_mode) ? "'%s' is a directory" : "'%s' is not a regular file", name.c_str());
    return ExitCode::badInput;
}

} // namespace

ExitCode FileSource::open() {
    if (const ExitCode code = openRegularFile(); code != ExitCode::success)
        return code;
    m_isSparse = m_status.st_blocks * 512LL < m_status.st_size;
    m_buffer.reset(new char[static_cast<std::size_t>(blockSize)]);
    Piece piece;
    if (nextPiece(piece) != 0)
        return ExitCode::badInput;
    m_first = piece;
    return ExitCode::success;
}

ExitCode FileSource::openRegularFile() {
    // Opening a device can have side effects and opening a pipe blocks, so the type is checked with O_PATH first.  It
    // is checked again after the real open, because the path may have been replaced in between.
    for (const int flags : {O_PATH, O_RDONLY | O_NOCTTY}) {
        m_file.emplace(m_path.open(flags));
        if (!m_file->isOpened() || fstat64(m_file->descriptor(), &m_status) != 0)
            return m_path.reportFailure("src", ExitCode::badInput);
        if (const ExitCode code = requireRegular(m_status, m_path.name); code != ExitCode::success)
            return code;
    }
    return ExitCode::success;
}

int FileSource::next(Piece& piece) {
    if (!m_first)
        return nextPiece(piece);
    piece = *m_first;
    m_first.reset();
    return 0;
}

int FileSource::nextPiece(Piece& piece) {
    if (const long long hole = holeAhead(); hole != 0) {
        if (hole < 0 || lseek64(m_file->descriptor(), m_position + hole, SEEK_SET) == -1)
            return failToRead();
        piece = {.data = nullptr, .length = hole};
    } else if (readData(piece) != 0) {
        return -1;
    }
    m_position += piece.length;
    return piece.length == 0 ? checkEnd() : 0;
}

/// Length of the hole at the position; 0 if there is none, or the file system does not report holes; -1 on failure.
long long FileSource::holeAhead() {
    if (!m_isSparse || m_position < m_endOfData)
        return 0;
    const int file = m_file->descriptor();
    long long data = lseek64(file, m_position, SEEK_DATA);
    if (data == -1 && errno == ENXIO) // no data up to the end of the file
        data = currentSize();
    else if (data == m_position)
        m_endOfData = lseek64(file, m_position, SEEK_HOLE);
    if (data > m_position)
        return std::min(data - m_position, longestHole);
    if (m_endOfData <= m_position)
        m_endOfData = std::numeric_limits<long long>::max();
    return lseek64(file, m_position, SEEK_SET) == -1 ? -1 : 0;
}

int FileSource::readData(Piece& piece) {
    const long long wanted = m_isSparse ? std::min(blockSize, m_endOfData - m_position) : blockSize;
    ssize_t got = -1;
    do
        got = ::read(m_file->descriptor(), m_buffer.get(), static_cast<std::size_t>(wanted));
    while (got == -1 && errno == EINTR && !NotesInterruption::isInterrupted());
    if (got == -1)
        return failToRead();
    piece = {.data = m_buffer.get(), .length = got};
    return 0;
}

/// Reports an error if the file was truncated during the copy.
int FileSource::checkEnd() const {
    if (currentSize() >= m_status.st_size)
        return 0;
    setErrorMessage("'%s' was truncated while it was being read", m_path.name.c_str());
    return -1;
}

long long FileSource::currentSize() const {
    struct stat64 status {};
    return fstat64(m_file->descriptor(), &status) == 0 ? status.st_size : 0;
}

int FileSource::failToRead() const {
    const int error = errno;
    setErrorMessage("Cannot read from file \"%s\": %s [%d]", m_path.name.c_str(), std::strerror(error), error);
    return -1;
}

} // namespace Qel::Tool
