#include "qel/cachefile/CacheFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "qel/cachefile/CacheFileChecker.h"
#include "qel/cachefile/CacheFileFormat.h"

namespace Qel::Tool {

namespace {

/// Owns a file descriptor.  Closing it releases the file lock.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_number >= 0)
            close(m_number);
    }
    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

int lockShared(int descriptor) {
    int result = 0;
    do
        result = flock(descriptor, LOCK_SH);
    while (result != 0 && errno == EINTR);
    return result;
}

/// Reads the first `length` bytes, or the whole file if it is shorter.
int readStart(int descriptor, std::size_t length, std::vector<std::byte>& bytes) {
    bytes.resize(length);
    std::size_t done = 0;
    while (done < length) {
        const ssize_t count = pread(descriptor, bytes.data() + done, length - done, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return -1;
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return 0;
}

} // namespace

ExitCode readCacheFile(const std::string& path, std::vector<std::byte>& bytes, std::string& error) {
    const auto fail = [&](ExitCode code, const std::string& text) {
        error = path + ": " + text;
        return code;
    };
    // O_NONBLOCK: opening a named pipe would otherwise wait for a writer.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (file.number() < 0 || fstat(file.number(), &status) != 0)
        return fail(ExitCode::badInput, std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        return fail(ExitCode::badInput, "not a regular file");
    if (lockShared(file.number()) != 0)
        return fail(ExitCode::failed, std::string("cannot lock the file: ") + std::strerror(errno));
    // The file may have grown before the lock was acquired.
    if (fstat(file.number(), &status) != 0 || readStart(file.number(), CacheFormat::Header::length, bytes) != 0)
        return fail(ExitCode::failed, std::string("cannot read the file: ") + std::strerror(errno));

    const CacheFileKind kind = identifyCacheFile(bytes);
    if (kind == CacheFileKind::unformatted)
        return fail(ExitCode::badInput, "never formatted: no process has used the file as a cache yet");
    if (kind == CacheFileKind::foreign || status.st_size > CacheFormat::greatestFileLength)
        return fail(ExitCode::badInput, "not a cache file");
    if (readStart(file.number(), static_cast<std::size_t>(status.st_size), bytes) != 0)
        return fail(ExitCode::failed, std::string("cannot read the file: ") + std::strerror(errno));
    return ExitCode::success;
}

bool isFreshCacheFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0)
        return errno == ENOENT;
    struct stat status {};
    std::vector<std::byte> header;
    return fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) &&
           readStart(file.number(), CacheFormat::Header::length, header) == 0 &&
           identifyCacheFile(header) == CacheFileKind::unformatted;
}

} // namespace Qel::Tool
