#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// The value of a counter.  The enclosing record specifies the active member.
union QelPerfValue {
    long long integer = 0;
    double real;
};

/// Statistics of one counter over an interval.  The table of counters, which is not part of this library, defines the
/// numbered values.
struct QelPerfStat {
    /// Form of all four values.  The wire does not encode it: the caller of the reader supplies it from the vocabulary.
    bool isInteger = true;

    QelPerfValue current;
    QelPerfValue stat1060;
    QelPerfValue stat1062;
    QelPerfValue stat1061;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Returns -1 unless all four values are present and well-formed.
struct QEL_EXPORT QelPerfStat::Reader {
    /// The value type of a vocabulary: 0 for doubles, otherwise integers.
    explicit Reader(int integer = 1) : isInteger(integer != 0) {}

    int operator()(const QelMessageIterator& cursor, QelPerfStat& stat) const;

    bool isInteger;
};

struct QEL_EXPORT QelPerfStat::Writer : QelWriterBaseT<Writer> {
    /// Any other value means doubles.
    enum Mode : int { asStored = -1, asDoubles = 0, asIntegers = 1 };

    explicit Writer(int writerMode = asStored) : mode(writerMode) {}

    int operator()(QelMessageIterator& cursor, const QelPerfStat& stat) const;

    int mode;
};

} // namespace Qel
