#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The time zone of a host.
struct QEL_EXPORT QelTimeZone : QelRecord<QelTimeZone> {
    std::string name;
    std::string f1788;

    /// Stops with -1 if the cursor returns -1 for a field.  Any other nonzero result is ignored.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelTimeZone& zone) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

/// A point in time, as a number or a string.
struct QEL_EXPORT QelDate {
    long time = 0; ///< seconds since the epoch; 0: unset
    std::string f2007;

    /// Whether both fields are unset.  Reading or writing an empty date fails.
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

    static const QelWireLayout& wire;
};

} // namespace Qel
