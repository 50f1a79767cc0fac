#include "QelCore/QelFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/QelCacheFormat.h"

namespace Qel {

namespace {

/// A file opened read-only.  Closing it releases its lock, if held.
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(const char* path)
        : m_descriptor(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
    ~ReadOnlyFile() {
        if (isOpen())
            ::close(m_descriptor);
    }

    [[nodiscard]] bool isOpen() const noexcept { return m_descriptor >= 0; }
    [[nodiscard]] bool status(struct stat& result) const noexcept { return fstat(m_descriptor, &result) == 0; }

    [[nodiscard]] bool lock() const noexcept {
        int failed = flock(m_descriptor, LOCK_EX);
        while (failed && errno == EINTR)
            failed = flock(m_descriptor, LOCK_EX);
        return !failed;
    }

    /// Reads `size` bytes at `offset`.  Bytes past the end of the file read as zero, which is not an error.
    [[nodiscard]] bool read(void* target, std::size_t size, off_t offset) const noexcept {
        auto* bytes = static_cast<char*>(target);
        std::memset(bytes, 0, size);
        while (size > 0) {
            const ssize_t got = pread(m_descriptor, bytes, size, offset);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return got == 0;
            bytes += got;
            size -= static_cast<std::size_t>(got);
            offset += got;
        }
        return true;
    }

private:
    int m_descriptor;
};

int failure(const char* operation, const char* path, int error) {
    setErrorMessage("%s '%s': %s", operation, path, std::strerror(error));
    return -1;
}

eCacheFileKind unreadable(const std::string& path, int error) {
    failure("cannot read", path.c_str(), error);
    return eCacheFileKind::unreadable;
}

} // namespace

int removeFile(const std::string& path) {
    return unlink(path.c_str()) == 0 || errno == ENOENT ? 0 : failure("cannot remove", path.c_str(), errno);
}

eCacheFileKind inspectCacheFile(const std::string& path) {
    const ReadOnlyFile file(path.c_str());
    if (!file.isOpen())
        return errno == ENOENT ? eCacheFileKind::missing : unreadable(path, errno);
    struct stat status {};
    if (!file.status(status) || !S_ISREG(status.st_mode))
        return unreadable(path, EINVAL);

    // The header as 4-byte words; QelCacheLogic::CacheHeader documents the layout.
    constexpr unsigned wordSize = 4;
    enum Word { allocated = 2, size = 3, magic = 7, headerBytes = 8, revision = 10, valid = 13, wordCount = 14 };
    static_assert(wordCount * wordSize == CacheFormat::headerBytes && valid * wordSize == CacheFormat::validOffset);
    std::array<std::uint32_t, wordCount> words{};
    if (!file.read(words.data(), sizeof words, 0))
        return unreadable(path, errno);
    if (std::all_of(words.begin(), words.end(), [](std::uint32_t word) { return word == 0; }))
        return eCacheFileKind::unformatted;
    const bool good = words[allocated] != 0 && words[valid] != 0 && words[magic] == CacheFormat::magic &&
                      words[headerBytes] == CacheFormat::headerBytes && words[revision] == CacheFormat::revision &&
                      words[size] <= static_cast<std::uint64_t>(status.st_size);
    return good ? eCacheFileKind::cache : eCacheFileKind::foreign;
}

int removeLockedCacheFile(const char* path, int code) {
    if (code == cacheSuccess)
        return 0;
    const ReadOnlyFile file(path);
    if (!file.isOpen())
        return errno == ENOENT ? 0 : failure("cannot remove", path, errno);
    if (!file.lock())
        return failure("cannot lock", path, errno);

    struct stat locked {};
    struct stat named {};
    std::uint32_t valid = 0;
    if (!file.status(locked) || !file.read(&valid, sizeof valid, CacheFormat::validOffset))
        return failure("cannot read", path, errno);
    const bool sameFile = stat(path, &named) == 0 && named.st_dev == locked.st_dev && named.st_ino == locked.st_ino;
    if (!sameFile)
        return 0;
    if (valid != 0)
        return failure("refusing to remove usable cache", path, EBUSY);
    return removeFile(path);
}

} // namespace Qel
