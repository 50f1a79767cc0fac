#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Files/QelFilerOptions.h"
#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"

namespace Qel {

/// Owns a file descriptor.  Operations return 0, or -1 with errno set.
class QEL_EXPORT QelFile {
public:
    static constexpr long long appendOffset = -1;   ///< as an offset: append to the file
    static constexpr long long truncateOffset = -2; ///< as an offset: truncate the file

    /// Takes ownership of a descriptor; -1 for none.
    explicit QelFile(int descriptor = -1) : m_descriptor(descriptor) {}
    QelFile(const QelFile&) = delete;
    QelFile& operator=(const QelFile&) = delete;
    ~QelFile() { close(); }

    [[nodiscard]] bool isOpened() const { return m_descriptor != -1; }
    [[nodiscard]] int descriptor() const { return m_descriptor; }
    /// Returns 0, or -1 if the file system could not store data written earlier.  The file is closed in either case.
    int close();

    /// Both operations open the file unless one is already open, and seek to an offset above 0.  After a failure the
    /// file is closed.
    ///
    /// The umask of the whole process is 0 during the open, so that a new file gets exactly the requested mode.  So
    /// does a file that another thread creates at that moment.
    ///
    /// If `size` is not null, it receives the number of bytes in the file after the offset; it is negative if the file
    /// ends before the offset.
    [[nodiscard]] int openRead(const std::string& path, long long offset, long long* size);
    /// Creates the file with the mode in `attrs`, or 0777 if `attrs` is null.  Without QelFilerOptions::overwrite, an
    /// existing file is an error.
    [[nodiscard]] int openWrite(const std::string& path, long long offset, const QelFilerOptions& options,
                                const QelSecurityAttributes* attrs);

private:
    int openFile(const std::string& path, int flags, long long offset, const QelSecurityAttributes* attrs,
                 long long* size);
    int closeAfterFailure();

    int m_descriptor;
};

} // namespace Qel
