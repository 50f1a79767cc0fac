#include "qel/transfer/OpenBeneath.h"

#include <array>
#include <cerrno>
#include <climits>
#include <deque>
#include <utility>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "QelFunctionalityCore/Files/QelFile.h"

namespace Qel::Tool {

namespace {

/// The kernel's limit (MAXSYMLINKS).
constexpr int mostLinks = 40;

int failWith(int error) {
    errno = error;
    return -1;
}

/// `path` relative to the directory that it is resolved in.
std::string relative(const std::string& path) {
    const std::size_t start = path.find_first_not_of('/');
    return start == std::string::npos ? "." : path.substr(start);
}

/// The file type bits of an open file's mode; 0 on failure.
mode_t typeOf(int descriptor) {
    struct stat64 status {};
    return fstat64(descriptor, &status) == 0 ? status.st_mode & S_IFMT : 0;
}

/// Resolves a path component by component.  All directories on the way are kept open, so that ".." returns to the
/// directory that was entered, even if it has been moved since.
class Walk {
public:
    Walk(int directory, const std::string& path) : m_top(directory), m_rest(path) {}

    int open(int flags, mode_t mode) {
        constexpr int toWalk = O_PATH | O_CLOEXEC;
        for (;;) {
            const std::string name = popComponent();
            if (name == "..") {
                if (m_entered.empty())
                    return failWith(EXDEV);
                m_entered.pop_back();
            }
            if (name == "." || name == "..") {
                if (m_rest.empty())
                    return openat64(current(), ".", flags, mode);
                continue;
            }
            const bool isLast = m_rest.empty();
            const int component = openat64(current(), name.c_str(), (isLast ? flags : toWalk) | O_NOFOLLOW, mode);
            // O_PATH | O_NOFOLLOW opens the symbolic link itself; without O_PATH the call fails with ELOOP.
            const bool failsAtLink = component == -1 && isLast && errno == ELOOP;
            if (component == -1 && !failsAtLink)
                return -1;
            if (const mode_t type = typeOf(component); failsAtLink || type == S_IFLNK) {
                const QelFile link(component);
                if (follow(link, name) != 0)
                    return -1;
            } else if (isLast) {
                return component;
            } else {
                m_entered.emplace_back(component);
                // Without this check, "file/.." would resolve to the current directory.
                if (type != S_IFDIR)
                    return failWith(ENOTDIR);
            }
        }
    }

private:
    [[nodiscard]] int current() const { return m_entered.empty() ? m_top : m_entered.back().descriptor(); }

    /// Removes the first component from the rest.  A trailing slash leaves ".".
    std::string popComponent() {
        const std::size_t end = m_rest.find('/');
        if (end == std::string::npos)
            return std::exchange(m_rest, {});
        std::string name = m_rest.substr(0, end);
        m_rest = relative(m_rest.substr(end));
        return name;
    }

    /// Prepends the target of a symbolic link to the rest.
    int follow(const QelFile& link, const std::string& name) {
        if (++m_links > mostLinks)
            return failWith(ELOOP);
        std::array<char, PATH_MAX> target{};
        const ssize_t length = link.isOpened() ? readlinkat(link.descriptor(), "", target.data(), target.size())
                                               : readlinkat(current(), name.c_str(), target.data(), target.size());
        if (length < 0)
            return -1;
        if (length == PATH_MAX)
            return failWith(ENAMETOOLONG);
        if (target[0] == '/')
            return failWith(EXDEV);
        m_rest = std::string(target.data(), static_cast<std::size_t>(length)) + (m_rest.empty() ? "" : "/" + m_rest);
        return 0;
    }

    int m_top;
    std::string m_rest;
    std::deque<QelFile> m_entered;
    int m_links = 0;
};

} // namespace

int openBeneathInKernel(int directory, const std::string& path, int flags, mode_t mode) {
    open_how how{};
    // Unlike openat(2), openat2(2) rejects flags and modes without effect.
    how.flags = static_cast<unsigned>(flags) | ((flags & O_PATH) != 0 ? 0U : O_LARGEFILE);
    how.mode = (flags & O_CREAT) != 0 ? mode : 0;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    return static_cast<int>(syscall(SYS_openat2, directory, relative(path).c_str(), &how, sizeof how));
}

int openBeneathByComponents(int directory, const std::string& path, int flags, mode_t mode) {
    return Walk(directory, relative(path)).open(flags, mode);
}

int openBeneath(int directory, const std::string& path, int flags, mode_t mode) {
    // EAGAIN: a directory was moved while ".." was being resolved.
    int descriptor = -1;
    int attempts = 100;
    do
        descriptor = openBeneathInKernel(directory, path, flags, mode);
    while (descriptor == -1 && errno == EAGAIN && --attempts > 0);
    if (descriptor == -1 && (errno == ENOSYS || errno == EPERM || errno == EAGAIN))
        return openBeneathByComponents(directory, path, flags, mode);
    return descriptor;
}

} // namespace Qel::Tool
