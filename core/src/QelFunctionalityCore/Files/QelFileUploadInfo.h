#pragma once

#include <memory>
#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Files/QelFile.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"

namespace Qel {

/// The sending end of a transfer.  `path` is the name at the receiving end.  Sent as a QelFileInfo.
struct QEL_EXPORT QelFileUploadInfo : QelFileInfo {
    /// If `bytes` is not null, copies `fileSize` bytes from it.  With unknownSize, `bytes` is a C string and its length
    /// becomes the size.
    QelFileUploadInfo(const std::string& source, const std::string& dst, long long fileSize, long long fileOffset,
                      const char* bytes);
    QelFileUploadInfo(const std::string& dst, long long fileSize, long long fileOffset, const char* bytes);

    std::string src; ///< local file; empty if there is none

    [[nodiscard]] std::string getSrc() const override { return src; }

    /// Returns the next block, which this object owns and which is valid until the next call.  The result is 0 or -1.
    ///
    /// This implementation returns all the data at once and sets `length` to its size.  It fails if that is not `size`
    /// or is above 2^31 - 1.
    [[nodiscard]] virtual int fillBuffer(const char*& buffer, int& length);
    virtual void setSrc(const std::string& source) { src = source; }

    using Reader = QelReaderAs<QelFileInfo>;
    using Writer = QelWriterAs<QelFileInfo, QelWriterBase::getNSID(), QelWriterBase::getTypeID()>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Reads the blocks from a file.
struct QEL_EXPORT QelFileUploadFromFile : QelFileUploadInfo {
    /// With unknownSize, the size becomes the number of bytes in the file after the offset.  If the file cannot be
    /// opened, the size stays unknown and start() reports the error.
    QelFileUploadFromFile(const std::string& source, const std::string& dst, long long fileSize, long long fileOffset);
    /// Has no file until setSrc() names one.  The descriptor is ignored.
    QelFileUploadFromFile(int descriptor, const std::string& dst, long long fileSize, long long fileOffset);

    [[nodiscard]] int start() override;
    void finish() override;
    /// Reads at most `length` bytes, limited to a block and to `size`, and sets `length` to the number of bytes read.
    /// Returns -1 and sets the error message if no bytes are read, which includes the end of the file.
    [[nodiscard]] int fillBuffer(const char*& buffer, int& length) override;

private:
    void getSize();

    QelFile m_file;
    std::unique_ptr<char[]> m_buffer;
    int m_capacity = 0;
};

} // namespace Qel
