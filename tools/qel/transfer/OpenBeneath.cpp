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

/// As many as the kernel follows.
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

/// The type bits of the mode of an open file; 0 if there are none.
mode_t typeOf(int descriptor) {
    struct stat64 status {};
    return fstat64(descriptor, &status) == 0 ? status.st_mode & S_IFMT : 0;
}

/// Resolves a path with the directories that lead to the current one kept open, so that ".." needs no look at a
/// directory that may have been moved.
class Walk {
public:
    Walk(int directory, const std::string& path) : m_top(directory), m_rest(path) {}

    int open(int flags, mode_t mode) {
        constexpr int toWalk = O_PATH | O_CLOEXEC;
        for (;;) {
            const std::string name = takeName();
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
            // With O_PATH a link is opened itself; otherwise O_NOFOLLOW fails.
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
                // Otherwise a ".." would lead back.
                if (type != S_IFDIR)
                    return failWith(ENOTDIR);
            }
        }
    }

private:
    [[nodiscard]] int current() const { return m_entered.empty() ? m_top : m_entered.back().descriptor(); }

    /// Removes the first name from the rest.  After a trailing slash the rest is ".".
    std::string takeName() {
        const std::size_t end = m_rest.find('/');
        if (end == std::string::npos)
            return std::exchange(m_rest, {});
        std::string name = m_rest.substr(0, end);
        m_rest = relative(m_rest.substr(end));
        return name;
    }

    /// Puts the target of a link in front of the rest.
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
    // Unlike openat(2), the call refuses flags and modes that have no effect.
    how.flags = static_cast<unsigned>(flags) | ((flags & O_PATH) != 0 ? 0U : O_LARGEFILE);
    how.mode = (flags & O_CREAT) != 0 ? mode : 0;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    return static_cast<int>(syscall(SYS_openat2, directory, relative(path).c_str(), &how, sizeof how));
}

int openBeneathByComponents(int directory, const std::string& path, int flags, mode_t mode) {
    return Walk(directory, relative(path)).open(flags, mode);
}

int openBeneath(int directory, const std::string& path, int flags, mode_t mode) {
    // EAGAIN: a directory was moved during the resolution of a "..".
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
