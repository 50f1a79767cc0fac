#pragma once

#include <string>
#include <sys/types.h>

#include "QelCommon/Export.h"
#include "QelMessage/QelDescriptor.h"

namespace Qel {

/// An advisory exclusive lock on a file, for threads and processes. Hold it from before the file is read until after it
/// has been replaced, so that no concurrent change is lost:
///
///     QelFileLock lock;
///     if (lock.acquire(path) != 0 || configuration.readFromFile(path) != 0)
///         return -1;
///     configuration.setMaster(eid);
///     return configuration.saveToFile(path);
///
/// Readers need no lock, since files are replaced atomically. The lock is an empty file ".qel-lock-NAME" in the same
/// directory, locked with flock(). It exists while the lock is held or waited for. If the holder is killed, the lock is
/// released, and the empty file remains until the next holder releases it.
class QEL_EXPORT QelFileLock {
public:
    QelFileLock() = default;
    QelFileLock(const QelFileLock&) = delete;
    QelFileLock& operator=(const QelFileLock&) = delete;
    ~QelFileLock() { release(); }

    /// Waits for the lock of the file that `path` resolves to. The file need not exist; symbolic links are followed.
    /// For devices, pipes and directories this succeeds without a lock. Returns -1 with an error message if the lock
    /// file cannot be used or this object already holds a lock. A thread that already holds the lock through another
    /// object deadlocks.
    [[nodiscard]] int acquire(const std::string& path);
    void release();

private:
    QelDescriptor m_file; ///< the lock file; not open if no lock is held
    std::string m_path;   ///< path of the lock file
    pid_t m_process = -1; ///< the holder; a forked child does not hold the lock
};

} // namespace Qel
