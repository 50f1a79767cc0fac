#include "QelFunctionalityCore/Monitoring/QelTimeInterval.h"

#include "QelCommon/Log.h"

namespace Qel {

namespace {

constexpr int startElement = 1063;
constexpr int endElement = 1064;

} // namespace

int QelTimeInterval::Reader::operator()(const QelMessageIterator& cursor, QelTimeInterval& interval) const {
    if (cursor.getValueTimeZone(interval.startTime, interval.zone, startElement) == -1 ||
        cursor.getValueTimeZone(interval.endTime, interval.zone, endElement) == -1)
        return -1;
    Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelPerfData", 25, __func__, __PRETTY_FUNCTION__)
        .put(LogLevel::trace, "[%s] data.startTime: %ld, data.endTime: %ld, data.zone: %d", __func__,
             interval.startTime, interval.endTime, interval.zone);
    return 0;
}

int QelTimeInterval::Writer::operator()(QelMessageIterator& cursor, const QelTimeInterval& interval) const {
    if ((ends & start) != 0)
        cursor.putValueTimeZone(interval.startTime, interval.zone, startElement);
    if ((ends & end) != 0)
        cursor.putValueTimeZone(interval.endTime, interval.zone, endElement);
    return 0;
}

QelTimeInterval::Writer timeIntervalWriter(const QelTimeInterval& interval) {
    using Writer = QelTimeInterval::Writer;
    return Writer((interval.startTime != 0 ? Writer::start : 0) |
                  (interval.endTime != QelTimeInterval::openEnd ? Writer::end : 0));
}

} // namespace Qel
