#include "QelMessage/QelFileTarget.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <string_view>

#include <unistd.h>

namespace Qel {

namespace {

std::size_t folderLength(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? 0 : slash + 1;
}

/// The descriptor of this process that an entry of /proc/self/fd refers to; -1 for any other path.
///
/// Opening such an entry is not equivalent to using the descriptor: a regular file is opened at its start, and a socket
/// cannot be opened.
int ownDescriptor(const std::string& path) {
    const std::size_t length = folderLength(path);
    int number = -1;
    const char* const end = path.data() + path.size();
    const auto parsed = std::from_chars(path.data() + length, end, number);
    if (length == 0 || parsed.ec != std::errc() || parsed.ptr != end || number < 0)
        return -1;
    struct stat folder {};
    struct stat own {};
    const bool isOwn = ::stat(path.substr(0, length).c_str(), &folder) == 0 && ::stat("/proc/self/fd", &own) == 0 &&
                       isSameFile(folder, own);
    return isOwn ? number : -1;
}

QelFileTarget::Kind kindOf(mode_t mode) {
    if (S_ISREG(mode))
        return QelFileTarget::Kind::regular;
    return S_ISDIR(mode) ? QelFileTarget::Kind::directory : QelFileTarget::Kind::stream;
}

/// Replaces the path of a symbolic link with its target. Returns false with errno set on failure: EINVAL if it is not a
/// link.
bool followLink(std::string& path) {
    std::array<char, PATH_MAX> content{};
    const ssize_t length = ::readlink(path.c_str(), content.data(), content.size());
    if (length < 0)
        return false;
    const std::string_view to(content.data(), static_cast<std::size_t>(length));
    // Deliberately not canonicalised: the kernel resolves ".." after the links in the directory part, as it does for
    // the link itself.
    path = to.starts_with('/') ? std::string(to) : path.substr(0, folderLength(path)).append(to);
    return true;
}

} // namespace

bool QelFileTarget::find(const std::string& name) {
    path = name;
    constexpr int mostLinks = 40; // the kernel's limit, MAXSYMLINKS
    for (int links = 0; links <= mostLinks; ++links) {
        if (descriptor = ownDescriptor(path); descriptor >= 0) {
            kind = Kind::descriptor;
            return true;
        }
        const bool exists = ::stat(path.c_str(), &status) == 0;
        if (!exists && errno != ENOENT)
            return false;
        kind = exists ? kindOf(status.st_mode) : Kind::missing;
        if (kind == Kind::directory || kind == Kind::stream)
            return true;
        if (followLink(path))
            continue;
        if (errno == EINVAL)
            return true;
        const bool isName = !path.empty() && !path.ends_with('/');
        if (errno == ENOENT && !path.empty() && !isName)
            errno = EISDIR;
        return errno == ENOENT && isName;
    }
    errno = ELOOP;
    return false;
}

std::string QelFileTarget::folder() const {
    return path.substr(0, folderLength(path));
}

std::string QelFileTarget::file() const {
    return path.substr(folderLength(path));
}

bool takeOwner(int file, const struct stat& of) noexcept {
    constexpr auto unchanged = static_cast<uid_t>(-1);
    return ::fchown(file, of.st_uid, of.st_gid) == 0 || ::fchown(file, unchanged, of.st_gid) == 0;
}

} // namespace Qel
