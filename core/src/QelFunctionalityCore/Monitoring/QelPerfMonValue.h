#pragma once

#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// What the two value blocks of the performance monitor have in common: 128 bytes that travel as they are, in base64
/// and in the byte order of the agent's machine.
struct QelPerfMonBlock {
    static constexpr unsigned count = 14;

    unsigned char header[16] = {}; ///< belongs to the side that makes the block; this library only carries it
    double values[count] = {};     ///< what each is, is settled by the performance monitor

    struct Reader;
    struct Writer;
};

/// -1, and the block as it was, for anything but 128 bytes.
struct QelPerfMonBlock::Reader {
    int operator()(const QelMessageIterator& cursor, QelPerfMonBlock& block) const;
};

struct QelPerfMonBlock::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelPerfMonBlock& block) const;
};

/// Values of this moment.
struct QelPerfMonActualValue : QelPerfMonBlock {
    using reader_type = Reader;
    using writer_type = Writer;

    /// Ends the process unless `index` is below `count`.
    void set(unsigned index, double value);
};

/// Values of the past.
struct QelPerfMonHistoricalValue : QelPerfMonBlock {
    using reader_type = Reader;
    using writer_type = Writer;

    /// Ends the process unless `index` is below `count`.
    void set(unsigned index, double value);
};

} // namespace Qel
