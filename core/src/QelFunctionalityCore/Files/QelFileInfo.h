#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A file, or a part of one, in transfer between two agents.
///
/// A transport calls start(), moves blocks (see the classes of the two ends), then calls finish().  It does not need to
/// know whether the bytes are in memory or on disk.
///
/// Reading returns the result for the path: a size, an offset or data that cannot be read are left unchanged.
struct QEL_EXPORT QelFileInfo : QelRecord<QelFileInfo> {
    static constexpr long long unknownSize = -1;
    /// Maximum number of bytes in a block.
    static constexpr int maxBlockSize = 0x80000;

    explicit QelFileInfo(const std::string& filePath = {}, long long fileSize = unknownSize, long long fileOffset = 0)
        : path(filePath), size(fileSize), offset(fileOffset) {}
    virtual ~QelFileInfo() = default;

    std::string path; ///< may contain any bytes; the classes of the two ends specify which end it names
    long long size;   ///< bytes to transfer
    long long offset; ///< position of the first byte in the file
    std::string data; ///< the bytes, if they are in memory

    /// Returns 0, or -1 with the error message set.
    [[nodiscard]] virtual int start() { return 0; }
    virtual void finish() {}
    [[nodiscard]] virtual std::string getSrc() const { return path; }
    [[nodiscard]] virtual std::string getDst() const { return path; }

    static const QelWireLayout& wire;
};

} // namespace Qel
