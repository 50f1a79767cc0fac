#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// Common part of the two value blocks of the performance monitor: 128 bytes, sent verbatim in base64 and in the byte
/// order of the agent's machine.
struct QelPerfMonBlock {
    static constexpr unsigned count = 14;

    unsigned char header[16] = {}; ///< owned by the producer of the block; opaque to this library
    double values[count] = {};     ///< their meaning is defined by the performance monitor

    struct Reader;
    struct Writer;
};

/// Returns -1 and leaves the block unchanged unless the value has exactly 128 bytes.
struct QEL_EXPORT QelPerfMonBlock::Reader {
    int operator()(const QelMessageIterator& cursor, QelPerfMonBlock& block) const;
};

struct QEL_EXPORT QelPerfMonBlock::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelPerfMonBlock& block) const;
};

/// Current values.
struct QEL_EXPORT QelPerfMonActualValue : QelPerfMonBlock {
    using reader_type = Reader;
    using writer_type = Writer;

    /// Terminates the process unless `index` < `count`.
    void set(unsigned index, double value);
};

/// Historical values.
struct QEL_EXPORT QelPerfMonHistoricalValue : QelPerfMonBlock {
    using reader_type = Reader;
    using writer_type = Writer;

    /// Terminates the process unless `index` < `count`.
    void set(unsigned index, double value);
};

} // namespace Qel
