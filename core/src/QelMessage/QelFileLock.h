#pragma once

#include <string>
#include <sys/types.h>

#include "QelMessage/QelDescriptor.h"

namespace Qel {

/// The exclusive right to change a file, among the threads and processes that take this lock.  It is held from before
/// the file is read until after it has been replaced, so that no change of another process is lost:
///
///     QelFileLock lock;
///     if (lock.acquire(path) != 0 || configuration.readFromFile(path) != 0)
///         return -1;
///     configuration.setMaster(eid);
///     return configuration.saveToFile(path);
///
/// Readers need no lock: a file is replaced as a whole.  The lock is an empty file ".qel-lock-NAME" beside the file,
/// under flock().  It exists while the lock is held or waited for.  If a process is killed, the lock is free and the
/// empty file stays until the next holder releases it.
class QelFileLock {
public:
    QelFileLock() = default;
    QelFileLock(const QelFileLock&) = delete;
    QelFileLock& operator=(const QelFileLock&) = delete;
    ~QelFileLock() { release(); }

    /// Waits for the lock of the file that `path` leads to, which may be missing; symbolic links are followed. Devices,
    /// pipes and directories have no lock, which is not a failure.  -1, with an error message, if the lock file can't
    /// be used or this object already holds a lock.  A thread that waits for a lock that it holds through another
    /// object waits forever.
    [[nodiscard]] int acquire(const std::string& path);
    void release();

private:
    QelDescriptor m_file; ///< the lock file; closed if no lock is held
    std::string m_path;   ///< of the lock file
    pid_t m_process = -1; ///< the holder; a child made by fork() holds nothing
};

} // namespace Qel
