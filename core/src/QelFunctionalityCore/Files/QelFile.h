#pragma once

#include <string>

#include "QelFunctionalityCore/Files/QelFilerOptions.h"
#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"

namespace Qel {

/// Owner of a file descriptor.  Operations return 0, or -1 with the reason in errno.
class QelFile {
public:
    static constexpr long long appendOffset = -1;   ///< in place of an offset: what is written goes to the end
    static constexpr long long truncateOffset = -2; ///< in place of an offset: what the file held is dropped

    /// Takes over a descriptor; -1 is none.
    explicit QelFile(int descriptor = -1) : m_descriptor(descriptor) {}
    QelFile(const QelFile&) = delete;
    QelFile& operator=(const QelFile&) = delete;
    ~QelFile() { close(); }

    [[nodiscard]] bool isOpened() const { return m_descriptor != -1; }
    [[nodiscard]] int descriptor() const { return m_descriptor; }
    /// 0, or -1 if the file system could not store what was written.  This is closed in either case.
    int close();

    /// Both open the file unless this is open already, and go to an offset above 0.  When either fails this is closed.
    ///
    /// While a file is created the umask of the whole process is 0: the file gets just the mode that it is to have, and
    /// so does one that another thread creates at that moment.
    ///
    /// With `size` not null it becomes the number of bytes in the file behind the offset; below 0 if it ends before it.
    [[nodiscard]] int openRead(const std::string& path, long long offset, long long* size);
    /// Creates the file, with mode 0777 unless `attrs` tell another; one that exists is a failure without
    /// QelFilerOptions::overwrite.
    [[nodiscard]] int openWrite(const std::string& path, long long offset, const QelFilerOptions& options,
                                const QelSecurityAttributes* attrs);

private:
    int openFile(const std::string& path, int flags, long long offset, const QelSecurityAttributes* attrs,
                 long long* size);
    int closeAfterFailure();

    int m_descriptor;
};

} // namespace Qel
