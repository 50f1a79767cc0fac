#pragma once

#include <memory>
#include <string>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"

namespace Qel {

/// The end of a transfer that gives the bytes.  `path` is the name at the other end.  On the wire it is a QelFileInfo.
struct QelFileUploadInfo : QelFileInfo {
    /// With `bytes` not null, takes `fileSize` of them, or with unknownSize a C string, whose length becomes the size.
    QelFileUploadInfo(const std::string& source, const std::string& dst, long long fileSize, long long fileOffset,
                      const char* bytes);
    QelFileUploadInfo(const std::string& dst, long long fileSize, long long fileOffset, const char* bytes);

    std::string src; ///< the file here; empty if there is none

    [[nodiscard]] std::string getSrc() const override { return src; }

    /// The next block, which stays this object's and lasts until the next call.  0, or -1.
    ///
    /// Here it is all the data at once, `length` being set to its size; -1 if that isn't `size`, or above 2^31 - 1.
    [[nodiscard]] virtual int fillBuffer(const char*& buffer, int& length);
    virtual void setSrc(const std::string& source) { src = source; }

    using Reader = QelReaderAs<QelFileInfo>;
    using Writer = QelWriterAs<QelFileInfo, QelWriterBase::getNSID(), QelWriterBase::getTypeID()>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Gives the bytes of a file, block by block.
struct QelFileUploadFromFile : QelFileUploadInfo {
    /// With unknownSize the size becomes that of the file behind the offset; it stays unknown if the file can't be
    /// opened, which start() will tell.
    QelFileUploadFromFile(const std::string& source, const std::string& dst, long long fileSize, long long fileOffset);
    /// Without a file until setSrc() names it.  The descriptor isn't used.
    QelFileUploadFromFile(int descriptor, const std::string& dst, long long fileSize, long long fileOffset);

    [[nodiscard]] int start() override;
    void finish() override;
    /// Reads at most `length` bytes, and no more than a block or what start() was told is there; `length` becomes what
    /// was read.  -1, with the error message set, if that is nothing: nobody asks for bytes that aren't there.
    [[nodiscard]] int fillBuffer(const char*& buffer, int& length) override;

private:
    void getSize();

    QelFile m_file;
    std::unique_ptr<char[]> m_buffer;
    int m_capacity = 0;
};

} // namespace Qel
