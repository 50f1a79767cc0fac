#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// The time zone of a host.
struct QelTimeZone {
    std::string name;
    std::string f1788;

    /// -1 when the cursor answers just that for one of the fields; any other answer lets the reading go on.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelTimeZone& zone) const;
    };
    using Writer = QelRecordWriter<QelTimeZone>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A point in time as a number or as a text.
struct QelDate {
    long time = 0; ///< seconds since the epoch; 0 for none
    std::string f2007;

    /// Whether it tells no time at all: such a date is neither read nor written.
    [[nodiscard]] bool isEmpty() const { return time == 0 && f2007.empty(); }

    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelDate& date) const;
    };
    struct Writer : QelWriterBaseT<Writer> {
        static constexpr int getNSID() { return 292; }
        int operator()(QelMessageIterator& cursor, const QelDate& date) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
