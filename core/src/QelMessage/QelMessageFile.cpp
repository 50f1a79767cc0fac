#include "QelMessage/QelMessageFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelDescriptor.h"
#include "QelMessage/QelFileTarget.h"
#include "QelMessage/QelLimits.h"

namespace Qel::QelMessageFile {

namespace {

int failed(const std::string& path) {
    setErrorMessage("%s: %s", path.c_str(), std::strerror(errno));
    return -1;
}

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = retried([&] { return ::write(descriptor, content.data(), content.size()); });
        if (written < 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

constexpr mode_t permissions = 07777;

/// Whether the file may be replaced. Write permission on its directory would suffice for a rename, but a file without
/// any write permission must not be changed, not even by root.
bool isWritable(const QelFileTarget& target) {
    if ((target.status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        errno = EACCES;
        return false;
    }
    return ::faccessat(AT_FDCWD, target.path.c_str(), W_OK, AT_EACCESS) == 0;
}

/// Copies owner and permissions of the replaced file to a new file.
bool copyAttributes(int file, const struct stat& replaced) {
    struct stat status {};
    if (::fstat(file, &status) != 0)
        return false;
    if (status.st_uid != replaced.st_uid || status.st_gid != replaced.st_gid) {
        static_cast<void>(takeOwner(file, replaced)); // root may set both, others only a group they belong to
        if (::fstat(file, &status) != 0)
            return false;
    }
    mode_t mode = replaced.st_mode & permissions;
    if (status.st_gid != replaced.st_gid)
        mode &= ~static_cast<mode_t>(S_IRWXG | S_ISGID); // these permissions were meant for another group
    if (status.st_uid != replaced.st_uid)
        mode &= ~static_cast<mode_t>(S_ISUID);
    return (status.st_mode & permissions) == mode || ::fchmod(file, mode) == 0;
}

/// Sets the attributes and content of a newly created file and calls fsync for it.
bool writeNew(QelDescriptor& file, const QelFileTarget& target, std::string_view content) {
    if (target.kind == QelFileTarget::Kind::regular && !copyAttributes(file.get(), target.status))
        return false;
    return writeAll(file.get(), content) && retried([&] { return ::fsync(file.get()); }) == 0 && file.close();
}

/// Creates a temporary file in a folder and stores its name in `path`. The name does not contain that of the file to be
/// replaced, so it is never too long.
QelDescriptor createIn(const std::string& folder, mode_t mode, std::string& path) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        path = folder + ".qel-new-" + std::to_string(::getpid()) + '-' + std::to_string(attempt);
        QelDescriptor file(
            retried([&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); }));
        if (file.isOpen() || errno != EEXIST)
            return file;
    }
    return QelDescriptor();
}

/// Calls fsync for the directory, so that the rename survives a power failure.
void syncFolder(const std::string& folder) {
    const QelDescriptor opened(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        static_cast<void>(::fsync(opened.get()));
}

/// On failure returns false with errno set; the old file is unchanged.
bool replaceFile(const QelFileTarget& target, std::string_view content, NewFile created) {
    constexpr mode_t ownerOnly = 0600;
    constexpr mode_t everyone = 0666;
    const bool isNew = target.kind == QelFileTarget::Kind::missing;
    if (!isNew && !isWritable(target))
        return false;
    std::string beside;
    const mode_t mode = isNew && created == NewFile::umaskAllows ? everyone : ownerOnly;
    QelDescriptor file = createIn(target.folder(), mode, beside);
    if (!file.isOpen())
        return false;
    if (!writeNew(file, target, content) || ::rename(beside.c_str(), target.path.c_str()) != 0) {
        const int reason = errno;
        ::unlink(beside.c_str());
        errno = reason;
        return false;
    }
    syncFolder(target.folder());
    return true;
}

bool writeThrough(QelDescriptor stream, std::string_view content) {
    return stream.isOpen() && writeAll(stream.get(), content) && stream.close();
}

bool write(const QelFileTarget& target, std::string_view content, NewFile created) {
    switch (target.kind) {
    case QelFileTarget::Kind::directory:
        errno = EISDIR;
        return false;
    case QelFileTarget::Kind::stream:
        return writeThrough(
            QelDescriptor(retried([&] { return ::open(target.path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); })),
            content);
    case QelFileTarget::Kind::descriptor:
        return writeThrough(QelDescriptor(::fcntl(target.descriptor, F_DUPFD_CLOEXEC, 0)), content);
    case QelFileTarget::Kind::missing:
    case QelFileTarget::Kind::regular:
        break;
    }
    return replaceFile(target, content, created);
}

} // namespace

int read(const std::string& path, std::string& content) {
    const QelDescriptor file(retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (!file.isOpen())
        return failed(path);
    constexpr std::size_t step = 64 * 1024;
    std::string bytes;
    for (std::size_t size = 0;;) {
        bytes.resize(size + step);
        const ssize_t got = retried([&] { return ::read(file.get(), bytes.data() + size, step); });
        if (got < 0)
            return failed(path);
        size += static_cast<std::size_t>(got);
        if (size > QelLimits::messageBytes) {
            setErrorMessage("%s: longer than %zu bytes", path.c_str(), QelLimits::messageBytes);
            return -1;
        }
        if (got == 0) {
            bytes.resize(size);
            content = std::move(bytes);
            return 0;
        }
    }
}

int replace(const std::string& path, std::string_view content, NewFile created) {
    QelFileTarget target;
    return target.find(path) && write(target, content, created) ? 0 : failed(path);
}

} // namespace Qel::QelMessageFile
