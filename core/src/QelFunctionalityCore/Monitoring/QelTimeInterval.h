#pragma once

#include "QelCommon/Export.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// The period that a report covers.  Times are seconds since the epoch.
struct QelTimeInterval {
    long startTime = 0;
    long endTime = 0;
    int zone = 0; ///< of both ends, in minutes east of UTC

    /// End of an open interval.
    static constexpr long openEnd = 0x7fffffff;

    /// Sets both ends to `time`.
    void setStart(long time) { startTime = endTime = time; }

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Returns -1 unless both ends are present.  The zone is that of the end.
struct QEL_EXPORT QelTimeInterval::Reader {
    int operator()(const QelMessageIterator& cursor, QelTimeInterval& interval) const;
};

/// Writes the ends selected by a mask.
struct QEL_EXPORT QelTimeInterval::Writer : QelWriterBaseT<Writer> {
    enum Ends : int { start = 1, end = 2 };

    explicit Writer(int mask = start | end) : ends(mask) {}

    static constexpr int getNSID() { return 292; }
    static constexpr int getTypeID() { return 130; }
    int operator()(QelMessageIterator& cursor, const QelTimeInterval& interval) const;

    int ends;
};

/// Returns a writer that omits open ends: a start of 0 and an end of QelTimeInterval::openEnd.
QEL_EXPORT [[nodiscard]] QelTimeInterval::Writer timeIntervalWriter(const QelTimeInterval& interval);

} // namespace Qel
