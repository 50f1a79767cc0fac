#pragma once

#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// The value of a counter.  What it belongs to knows which of the two it is.
union QelPerfValue {
    long long integer = 0;
    double real;
};

/// The statistic of one counter over an interval.  What the numbered values mean is settled by the table of counters,
/// which isn't part of this library.
struct QelPerfStat {
    /// Which form all four values have.  The wire doesn't tell: the reader is told, by whoever knows the vocabulary.
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

/// -1 unless all four values are there and have the form.
struct QelPerfStat::Reader {
    /// As integers unless it is 0, which means doubles: the value type of a vocabulary.
    explicit Reader(int integer = 1) : isInteger(integer != 0) {}

    int operator()(const QelMessageIterator& cursor, QelPerfStat& stat) const;

    bool isInteger;
};

struct QelPerfStat::Writer : QelWriterBaseT<Writer> {
    /// What a mode is, besides any other number, which is doubles.
    enum Mode : int { asStored = -1, asDoubles = 0, asIntegers = 1 };

    explicit Writer(int writerMode = asStored) : mode(writerMode) {}

    int operator()(QelMessageIterator& cursor, const QelPerfStat& stat) const;

    int mode;
};

} // namespace Qel
