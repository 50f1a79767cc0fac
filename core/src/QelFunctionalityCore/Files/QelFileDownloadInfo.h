#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Files/QelFile.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"

namespace Qel {

/// The receiving end of a transfer.  `path` is the name at the sending end.  Sent as a QelFileInfo.
struct QEL_EXPORT QelFileDownloadInfo : QelFileInfo {
    /// The caller keeps ownership of the attributes, which may be null.
    QelFileDownloadInfo(const std::string& destination, const std::string& src, long long fileSize,
                        long long fileOffset, const QelFilerOptions& fileOptions,
                        const QelSecurityAttributes* attributes);

    std::string dst; ///< local file; empty if there is none
    QelFilerOptions options;
    const QelSecurityAttributes* attrs; ///< not owned; may be null

    [[nodiscard]] std::string getDst() const override { return dst; }

    /// Processes the next block.  Returns 0 or -1.  This implementation appends the block to `data`.
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

/// Writes the blocks to a file.  The offset may be QelFile::appendOffset or truncateOffset.
struct QEL_EXPORT QelFileDownloadToFile : QelFileDownloadInfo {
    QelFileDownloadToFile(const std::string& src, const std::string& destination, long long fileSize,
                          long long fileOffset, const QelFilerOptions& fileOptions,
                          const QelSecurityAttributes* attributes);
    /// Takes ownership of a descriptor and writes to it.
    QelFileDownloadToFile(const std::string& src, int descriptor, long long fileSize, long long fileOffset);

    [[nodiscard]] int start() override;
    void finish() override;
    /// Returns -1 and sets the error message if the block could not be written completely; the part that was written
    /// stays in the file.
    [[nodiscard]] int saveBuffer(const char* buffer, int length) override;

private:
    QelFile m_file;
};

} // namespace Qel
