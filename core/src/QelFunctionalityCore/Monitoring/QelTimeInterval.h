#pragma once

#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// What a report covers.  Times are seconds since the epoch.
struct QelTimeInterval {
    long startTime = 0;
    long endTime = 0;
    int zone = 0; ///< of both, in minutes east of Greenwich

    /// The end of an interval that has none.
    static constexpr long openEnd = 0x7fffffff;

    /// Makes it the moment `time`.
    void setStart(long time) { startTime = endTime = time; }

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1 unless both ends are there.  The zone is that of the end.
struct QelTimeInterval::Reader {
    int operator()(const QelMessageIterator& cursor, QelTimeInterval& interval) const;
};

/// Writes the ends that a mask names.
struct QelTimeInterval::Writer : QelWriterBaseT<Writer> {
    enum Ends : int { start = 1, end = 2 };

    explicit Writer(int mask = start | end) : ends(mask) {}

    static constexpr int getNSID() { return 292; }
    static constexpr int getTypeID() { return 130; }
    int operator()(QelMessageIterator& cursor, const QelTimeInterval& interval) const;

    int ends;
};

/// A writer of the ends that an interval has, for one that may be open: a start of 0 and an end of
/// QelTimeInterval::openEnd are none.
[[nodiscard]] QelTimeInterval::Writer timeIntervalWriter(const QelTimeInterval& interval);

} // namespace Qel
