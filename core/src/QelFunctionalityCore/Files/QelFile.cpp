#include "QelFunctionalityCore/Files/QelFile.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Qel {

int QelFile::close() {
    return isOpened() ? ::close(std::exchange(m_descriptor, -1)) : 0;
}

int QelFile::closeAfterFailure() {
    const int error = errno;
    close();
    errno = error;
    return -1;
}

int QelFile::openFile(const std::string& path, int flags, long long offset, const QelSecurityAttributes* attrs,
                      long long* size) {
    if (!isOpened()) {
        const mode_t mode = attrs ? static_cast<mode_t>(attrs->mode) : 0777;
        const mode_t before = umask(0);
        do
            m_descriptor = open64(path.c_str(), flags, mode);
        while (m_descriptor == -1 && errno == EINTR);
        umask(before);
    }
    if (!isOpened())
        return -1;
    if (offset > 0 && lseek64(m_descriptor, offset, SEEK_SET) == -1)
        return closeAfterFailure();
    if (size) {
        struct stat64 status {};
        if (fstat64(m_descriptor, &status) == -1)
            return closeAfterFailure();
        *size = status.st_size - (offset > 0 ? offset : 0);
    }
    return 0;
}

int QelFile::openRead(const std::string& path, long long offset, long long* size) {
    return openFile(path, O_RDONLY, offset, nullptr, size);
}

int QelFile::openWrite(const std::string& path, long long offset, const QelFilerOptions& options,
                       const QelSecurityAttributes* attrs) {
    int flags = O_WRONLY | O_CREAT;
    if (!options.has(QelFilerOptions::overwrite))
        flags |= O_EXCL;
    if (offset == appendOffset)
        flags |= O_APPEND;
    if (offset == truncateOffset)
        flags |= O_TRUNC;
    return openFile(path, flags, offset, attrs, nullptr);
}

} // namespace Qel
