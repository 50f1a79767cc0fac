#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// A file, or a piece of one, on its way between two agents.
///
/// A transport calls start(), then moves blocks (see the classes of the two ends), then finish(), and needs not know
/// whether the bytes are in memory or on disk.
struct QelFileInfo {
    static constexpr long long unknownSize = -1;
    /// Bytes that one block holds at most.
    static constexpr int maxBlockSize = 0x80000;

    explicit QelFileInfo(const std::string& filePath = {}, long long fileSize = unknownSize, long long fileOffset = 0)
        : path(filePath), size(fileSize), offset(fileOffset) {}
    virtual ~QelFileInfo() = default;

    std::string path; ///< may hold any bytes; of which end, the classes of the ends tell
    long long size;   ///< bytes to move
    long long offset; ///< of the first of them in the file
    std::string data; ///< them, if they are in memory

    /// 0, or -1 with the error message set.
    [[nodiscard]] virtual int start() { return 0; }
    virtual void finish() {}
    [[nodiscard]] virtual std::string getSrc() const { return path; }
    [[nodiscard]] virtual std::string getDst() const { return path; }

    /// The result is that of the path: a size, an offset or data that can't be read stay as they were.
    using Reader = QelRecordReader<QelFileInfo>;
    using Writer = QelRecordWriter<QelFileInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
