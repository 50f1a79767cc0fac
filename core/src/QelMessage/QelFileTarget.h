#pragma once

#include <cstdint>
#include <string>
#include <sys/stat.h>

namespace Qel {

/// The file that a path leads to.
struct QelFileTarget {
    enum class Kind : std::uint8_t {
        missing,    ///< no file; a dangling link leads to one that is missing
        regular,    ///< a regular file
        directory,  ///< a directory
        stream,     ///< a device, a pipe or a socket
        descriptor, ///< an open file of this process, as in /dev/stdout
    };

    /// Follows the symbolic links that `name` leads through.  False, with errno, if that is not possible.
    [[nodiscard]] bool find(const std::string& name);

    /// The directory part of `path` with its slash; empty for the current directory.
    [[nodiscard]] std::string folder() const;
    /// The last component of `path`.
    [[nodiscard]] std::string file() const;

    Kind kind = Kind::missing;
    std::string path;      ///< not a symbolic link if `kind` is missing or regular
    int descriptor = -1;   ///< the number, if `kind` is descriptor
    struct stat status {}; ///< of an existing file
};

/// Whether both are the status of one file.
[[nodiscard]] inline bool isSameFile(const struct stat& one, const struct stat& other) noexcept {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Gives an open file the owner and the group of another, or at least its group.  False if neither is permitted.
[[nodiscard]] bool takeOwner(int file, const struct stat& of) noexcept;

} // namespace Qel
