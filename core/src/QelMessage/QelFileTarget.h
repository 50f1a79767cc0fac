#pragma once

#include <cstdint>
#include <string>
#include <sys/stat.h>

namespace Qel {

/// The file that a path resolves to.
struct QelFileTarget {
    enum class Kind : std::uint8_t {
        missing,    ///< no file, possibly the target of a dangling link
        regular,    ///< a regular file
        directory,  ///< a directory
        stream,     ///< a device, a pipe or a socket
        descriptor, ///< an open file of this process, as in /dev/stdout
    };

    /// Resolves the symbolic links in `name`. Returns false with errno set on failure.
    [[nodiscard]] bool find(const std::string& name);

    /// The directory part of `path`, with a trailing slash; empty for the current directory.
    [[nodiscard]] std::string folder() const;
    /// The last component of `path`.
    [[nodiscard]] std::string file() const;

    Kind kind = Kind::missing;
    std::string path;      ///< the last component is not a symbolic link if `kind` is missing or regular
    int descriptor = -1;   ///< valid if `kind` is descriptor
    struct stat status {}; ///< valid if the file exists
};

/// Whether both refer to one file.
[[nodiscard]] inline bool isSameFile(const struct stat& one, const struct stat& other) noexcept {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Sets the owner and group of an open file to those of another, or only the group if the owner cannot be set. False if
/// neither is permitted.
[[nodiscard]] bool takeOwner(int file, const struct stat& of) noexcept;

} // namespace Qel
