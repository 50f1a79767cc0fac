#pragma once

#include <list>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The time that is none.
inline constexpr long qelNoTime = -1;

/// Tells when a scheduled task runs next.  The answer follows from the trigger's fields and the present time alone: a
/// trigger keeps no memory of past runs.
///
/// Times are seconds since the epoch.
struct QelSchedulerTrigger {
    QelSchedulerTrigger() = default;
    QelSchedulerTrigger(long startTime, long endTime) : start(startTime), end(endTime) {}
    QelSchedulerTrigger(const QelSchedulerTrigger&) = default;
    QelSchedulerTrigger& operator=(const QelSchedulerTrigger&) = default;
    virtual ~QelSchedulerTrigger();

    /// The first run after `now`; `next` -1 means that there are no more, or none that a long can hold.  Each class
    /// tells where its answers differ from this.
    ///
    /// -1, and `next` unchanged, if there is no answer: for a field that makes no sense, a negative `now` (but not in
    /// the weekly trigger), and where the calendar doesn't reach.
    [[nodiscard]] virtual int getNextRunTime(long now, long& next) const = 0;

    long start = qelNoTime; ///< first possible run, and the source of the time of day
    long end = qelNoTime;   ///< last possible run; -1 for no end

    /// The reader fails without a start, the writer on a negative one.
    using Reader = QelRecordReader<QelSchedulerTrigger>;
    using Writer = QelRecordWriter<QelSchedulerTrigger>;
    using reader_type = Reader;
    using writer_type = Writer;
};

using QelSchedulerTriggerList = std::list<boost::shared_ptr<QelSchedulerTrigger>>;

extern template class QelDerivedParserFactory<QelSchedulerTrigger>;

} // namespace Qel
