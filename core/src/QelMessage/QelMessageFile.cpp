#include "QelMessage/QelMessageFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelLimits.h"

namespace Qel::QelMessageFile {

namespace {

/// An open file, closed at the end.
class Descriptor {
public:
    explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { static_cast<void>(close()); }

    [[nodiscard]] bool isOpen() const noexcept { return m_descriptor >= 0; }
    [[nodiscard]] int get() const noexcept { return m_descriptor; }
    [[nodiscard]] bool close() noexcept {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int m_descriptor;
};

int failed(const std::string& path) {
    setErrorMessage("%s: %s", path.c_str(), std::strerror(errno));
    return -1;
}

/// The result of a system call, repeated while signals interrupt it.
template <class Call> auto retried(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
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

/// Writes a file that doesn't exist yet, down to the disk.
bool writeNew(Descriptor& file, const std::string& replaced, std::string_view content) {
    struct stat old {};
    if (::stat(replaced.c_str(), &old) == 0 && ::fchmod(file.get(), old.st_mode & 07777) != 0)
        return false;
    return writeAll(file.get(), content) && retried([&] { return ::fsync(file.get()); }) == 0 && file.close();
}

/// So that the new name survives a power failure, too.
void syncDirectory(const std::string& path) {
    const auto slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const Descriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        static_cast<void>(::fsync(opened.get()));
}

} // namespace

int read(const std::string& path, std::string& content) {
    const Descriptor file(retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
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

int replace(const std::string& path, std::string_view content) {
    std::string beside;
    constexpr mode_t everyone = 0666;

    int descriptor = -1;
    for (unsigned attempt = 0; attempt < 100; ++attempt) {
        beside = path + ".new-" + std::to_string(::getpid()) + '-' + std::to_string(attempt);
        descriptor = retried([&] { return ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everyone); });
        if (descriptor >= 0 || errno != EEXIST)
            break;
    }
    Descriptor file(descriptor);
    if (!file.isOpen())
        return failed(path);
    if (!writeNew(file, path, content) || ::rename(beside.c_str(), path.c_str()) != 0) {
        const int failure = failed(path);
        ::unlink(beside.c_str());
        return failure;
    }
    syncDirectory(path);
    return 0;
}

} // namespace Qel::QelMessageFile
