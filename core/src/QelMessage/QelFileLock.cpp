#include "QelMessage/QelFileLock.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <sys/file.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelFileTarget.h"

namespace Qel {

namespace {

/// The 64-bit FNV-1a hash in hexadecimal, equal in 32-bit and 64-bit processes.
std::string hashOf(std::string_view name) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    constexpr int base = 16;
    std::array<char, 16> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), hash, base).ptr};
}

std::string lockPath(const QelFileTarget& target) {
    constexpr std::size_t longest = 200; // with prefix and hash still less than NAME_MAX
    const std::string name = target.file();
    return target.folder() + ".qel-lock-" + name.substr(0, longest) +
           (name.size() > longest ? '-' + hashOf(name) : std::string());
}

/// Sets owner and permissions so that every process that may write the file can lock it. Processes that may only read
/// the file must not open the lock file: they could hold the lock forever.
void shareLock(int file, const struct stat& target) {
    constexpr mode_t owner = 0600;
    constexpr mode_t ownerAndGroup = 0660;
    const bool isShared = takeOwner(file, target) && (target.st_mode & S_IWGRP) != 0;
    static_cast<void>(::fchmod(file, isShared ? ownerAndGroup : owner));
}

/// Opens or creates a lock file. On failure the result is not open and errno is set.
QelDescriptor openLock(const std::string& path, const QelFileTarget& target) {
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    constexpr mode_t ownerOnly = 0600;
    for (;;) {
        QelDescriptor created(retried([&] { return ::open(path.c_str(), flags | O_CREAT | O_EXCL, ownerOnly); }));
        if (created.isOpen() && target.kind == QelFileTarget::Kind::regular)
            shareLock(created.get(), target.status);
        if (created.isOpen() || errno != EEXIST)
            return created;
        QelDescriptor opened(retried([&] { return ::open(path.c_str(), flags); }));
        if (opened.isOpen() || errno != ENOENT)
            return opened;
    }
}

/// Whether the path still refers to the open file. A holder removes the lock file when it releases the lock.
bool isNamed(const std::string& path, int file) {
    struct stat named {};
    struct stat open {};
    return ::lstat(path.c_str(), &named) == 0 && ::fstat(file, &open) == 0 && isSameFile(named, open);
}

/// Whether this can be a lock file. A file with content must not be removed.
bool isEmptyFile(int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0)
        return false;
    if (S_ISREG(status.st_mode) && status.st_size == 0)
        return true;
    errno = EEXIST;
    return false;
}

} // namespace

int QelFileLock::acquire(const std::string& path) {
    QelFileTarget target;
    if (m_file.isOpen())
        errno = EDEADLK;
    if (m_file.isOpen() || !target.find(path)) {
        setErrorMessage("%s: %s", path.c_str(), std::strerror(errno));
        return -1;
    }
    if (target.kind != QelFileTarget::Kind::missing && target.kind != QelFileTarget::Kind::regular)
        return 0;
    const std::string lock = lockPath(target);
    for (;;) {
        QelDescriptor file = openLock(lock, target);
        if (!file.isOpen() || !isEmptyFile(file.get()) || retried([&] { return ::flock(file.get(), LOCK_EX); }) != 0) {
            setErrorMessage("%s: cannot be locked with %s: %s", path.c_str(), lock.c_str(), std::strerror(errno));
            return -1;
        }
        if (!isNamed(lock, file.get()))
            continue;
        m_file = std::move(file);
        m_path = lock;
        m_process = ::getpid();
        return 0;
    }
}

void QelFileLock::release() {
    // Unlinked before it is unlocked, so that a waiting process detects the removal and creates a new lock file.
    if (m_file.isOpen() && m_process == ::getpid() && isNamed(m_path, m_file.get()))
        ::unlink(m_path.c_str());
    static_cast<void>(m_file.close());
}

} // namespace Qel
