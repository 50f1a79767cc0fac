#include "QelFunctionalityCore/Files/QelFileDownloadInfo.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"

namespace Qel {

QelFileDownloadInfo::QelFileDownloadInfo(const std::string& destination, const std::string& src, long long fileSize,
                                         long long fileOffset, const QelFilerOptions& fileOptions,
                                         const QelSecurityAttributes* attributes)
    : QelFileInfo(src, fileSize, fileOffset), dst(destination), options(fileOptions), attrs(attributes) {}

int QelFileDownloadInfo::saveBuffer(const char* buffer, int length) {
    if (length < 0)
        return -1;
    data.append(buffer, static_cast<std::size_t>(length));
    return 0;
}

QelFileDownloadToFile::QelFileDownloadToFile(const std::string& src, const std::string& destination, long long fileSize,
                                             long long fileOffset, const QelFilerOptions& fileOptions,
                                             const QelSecurityAttributes* attributes)
    : QelFileDownloadInfo(destination, src, fileSize, fileOffset, fileOptions, attributes) {}

QelFileDownloadToFile::QelFileDownloadToFile(const std::string& src, int descriptor, long long fileSize,
                                             long long fileOffset)
    : QelFileDownloadInfo({}, src, fileSize, fileOffset, QelFilerOptions(QelFilerOptions::overwrite), nullptr),
      m_file(descriptor) {}

int QelFileDownloadToFile::start() {
    const int result = m_file.openWrite(dst, offset, options, attrs);
    if (result != 0) {
        const int error = errno;
        setErrorMessage("Cannot open dst file \"%s\": %s [%d]", dst.c_str(), std::strerror(error), error);
    }
    return result;
}

int QelFileDownloadToFile::saveBuffer(const char* buffer, int length) {
    const ssize_t written = length < 0 ? 0 : ::write(m_file.descriptor(), buffer, static_cast<std::size_t>(length));
    if (written == length)
        return 0;
    // A short write does not set errno.  For a regular file it means that the file system is full.
    const int error = written == -1 ? errno : ENOSPC;
    setErrorMessage("Cannot write to file \"%s\": %s [%d]", dst.c_str(), std::strerror(error), error);
    return -1;
}

void QelFileDownloadToFile::finish() {
    m_file.close();
}

} // namespace Qel
