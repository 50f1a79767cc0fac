#pragma once

#include <string>

#include "QelFunctionalityCore/Files/QelFile.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"

namespace Qel {

/// The end of a transfer that takes the bytes.  `path` is the name at the other end.  On the wire it is a QelFileInfo.
struct QelFileDownloadInfo : QelFileInfo {
    /// The attributes stay the caller's; null for none.
    QelFileDownloadInfo(const std::string& destination, const std::string& src, long long fileSize,
                        long long fileOffset, const QelFilerOptions& fileOptions,
                        const QelSecurityAttributes* attributes);

    std::string dst; ///< the file here; empty if there is none
    QelFilerOptions options;
    const QelSecurityAttributes* attrs; ///< not owned; may be null

    [[nodiscard]] std::string getDst() const override { return dst; }

    /// Takes the next block.  0, or -1.  Here it is added to the data.
    [[nodiscard]] virtual int saveBuffer(const char* buffer, int length);
    virtual void setDst(const std::string& destination) { dst = destination; }
    [[nodiscard]] virtual const QelFilerOptions& getOptions() const { return options; }
    virtual void setOptions(const QelFilerOptions& fileOptions) { options = fileOptions; }
    [[nodiscard]] virtual const QelSecurityAttributes* getAttrs() const { return attrs; }
    virtual void setAttrs(const QelSecurityAttributes* attributes) { attrs = attributes; }

    using Reader = QelReaderAs<QelFileInfo>;
    using Writer = QelWriterAs<QelFileInfo, QelWriterBase::getNSID(), QelWriterBase::getTypeID()>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Writes the blocks into a file.  QelFile::appendOffset and truncateOffset may stand for the offset.
struct QelFileDownloadToFile : QelFileDownloadInfo {
    QelFileDownloadToFile(const std::string& src, const std::string& destination, long long fileSize,
                          long long fileOffset, const QelFilerOptions& fileOptions,
                          const QelSecurityAttributes* attributes);
    /// Writes to a descriptor that it takes over.
    QelFileDownloadToFile(const std::string& src, int descriptor, long long fileSize, long long fileOffset);

    [[nodiscard]] int start() override;
    void finish() override;
    /// -1, with the error message set, if not all of it could be written; what could stays in the file.
    [[nodiscard]] int saveBuffer(const char* buffer, int length) override;

private:
    QelFile m_file;
};

} // namespace Qel
