#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"

namespace Qel {

namespace {

struct Value {
    int element;
    QelPerfValue QelPerfStat::*member;
};

// In wire order.
constexpr Value values[] = {
    {1060, &QelPerfStat::stat1060},
    {1061, &QelPerfStat::stat1061},
    {1062, &QelPerfStat::stat1062},
    {1065, &QelPerfStat::current},
};

} // namespace

int QelPerfStat::Reader::operator()(const QelMessageIterator& cursor, QelPerfStat& stat) const {
    stat.isInteger = isInteger;
    int result = 0;
    for (const auto& [element, member] : values) {
        QelPerfValue& value = stat.*member;
        result |=
            isInteger ? cursor.getValueLongLong(value.integer, element) : cursor.getValueDouble(value.real, element);
    }
    return result == 0 ? 0 : -1;
}

int QelPerfStat::Writer::operator()(QelMessageIterator& cursor, const QelPerfStat& stat) const {
    const bool integers = mode == asStored ? stat.isInteger : mode == asIntegers;
    for (const auto& [element, member] : values) {
        const QelPerfValue& value = stat.*member;
        if (integers)
            cursor.putValueLongLong(value.integer, element);
        else
            cursor.putValueDouble(value.real, element);
    }
    return 0;
}

} // namespace Qel
