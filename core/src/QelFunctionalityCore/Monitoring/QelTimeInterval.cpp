#include "QelFunctionalityCore/Monitoring/QelTimeInterval.h"

#include "QelCommon/Log.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

int QelTimeInterval::Reader::operator()(const QelMessageIterator& cursor, QelTimeInterval& interval) const {
    if (cursor.getValueTimeZone(interval.startTime, interval.zone, "start_time"_element) == -1 ||
        cursor.getValueTimeZone(interval.endTime, interval.zone, "end_time"_element) == -1)
        return -1;
    Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelPerfData", 25, __func__, __PRETTY_FUNCTION__)
        .put(LogLevel::trace, "[%s] data.startTime: %ld, data.endTime: %ld, data.zone: %d", __func__,
             interval.startTime, interval.endTime, interval.zone);
    return 0;
}

int QelTimeInterval::Writer::operator()(QelMessageIterator& cursor, const QelTimeInterval& interval) const {
    if ((ends & start) != 0)
        cursor.putValueTimeZone(interval.startTime, interval.zone, "start_time"_element);
    if ((ends & end) != 0)
        cursor.putValueTimeZone(interval.endTime, interval.zone, "end_time"_element);
    return 0;
}

QelTimeInterval::Writer timeIntervalWriter(const QelTimeInterval& interval) {
    using Writer = QelTimeInterval::Writer;
    return Writer((interval.startTime != 0 ? Writer::start : 0) |
                  (interval.endTime != QelTimeInterval::openEnd ? Writer::end : 0));
}

} // namespace Qel
