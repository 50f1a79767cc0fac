#include "QelFunctionalityCore/Files/QelFileUploadInfo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"

namespace Qel {

QelFileUploadInfo::QelFileUploadInfo(const std::string& source, const std::string& dst, long long fileSize,
                                     long long fileOffset, const char* bytes)
    : QelFileInfo(dst, fileSize, fileOffset), src(source) {
    if (!bytes)
        return;
    if (size == unknownSize) {
        data = bytes;
        size = static_cast<long long>(data.size());
    } else if (size > 0) {
        data.assign(bytes, static_cast<std::size_t>(size));
    }
}

QelFileUploadInfo::QelFileUploadInfo(const std::string& dst, long long fileSize, long long fileOffset,
                                     const char* bytes)
    : QelFileUploadInfo({}, dst, fileSize, fileOffset, bytes) {}

int QelFileUploadInfo::fillBuffer(const char*& buffer, int& length) {
    if (size > std::numeric_limits<int>::max() || size != static_cast<long long>(data.size()))
        return -1;
    buffer = data.data();
    length = static_cast<int>(size);
    return 0;
}

QelFileUploadFromFile::QelFileUploadFromFile(const std::string& source, const std::string& dst, long long fileSize,
                                             long long fileOffset)
    : QelFileUploadInfo(source, dst, fileSize, fileOffset, nullptr) {
    getSize();
}

QelFileUploadFromFile::QelFileUploadFromFile(int, const std::string& dst, long long fileSize, long long fileOffset)
    : QelFileUploadFromFile(std::string(), dst, fileSize, fileOffset) {}

void QelFileUploadFromFile::getSize() {
    if (size == unknownSize && m_file.openRead(src, offset, &size) == 0)
        m_file.close();
}

int QelFileUploadFromFile::start() {
    long long available = 0;
    if (m_file.openRead(src, offset, &available) != 0) {
        const int error = errno;
        setErrorMessage("Cannot open src file \"%s\": %s [%d]", src.c_str(), std::strerror(error), error);
        return -1;
    }
    if (size > available) {
        m_file.close();
        setErrorMessage("Src file size was changed \"%s\"", src.c_str());
        return -1;
    }
    m_capacity = static_cast<int>(std::clamp<long long>(size, 0, maxBlockSize));
    // Not zero-initialised: only bytes that were read are returned.
    m_buffer.reset(new char[static_cast<std::size_t>(m_capacity)]);
    return 0;
}

int QelFileUploadFromFile::fillBuffer(const char*& buffer, int& length) {
    // At the end of the file, read() does not set errno.  Clear it, so that the message does not report an earlier
    // error.
    errno = 0;
    length = static_cast<int>(
        ::read(m_file.descriptor(), m_buffer.get(), static_cast<std::size_t>(std::clamp(length, 0, m_capacity))));
    if (length < 1) {
        const int error = errno;
        setErrorMessage("Cannot read from file \"%s\": %s [%d]", src.c_str(), std::strerror(error), error);
        return -1;
    }
    buffer = m_buffer.get();
    return 0;
}

void QelFileUploadFromFile::finish() {
    m_buffer.reset();
    m_capacity = 0;
    m_file.close();
}

} // namespace Qel
