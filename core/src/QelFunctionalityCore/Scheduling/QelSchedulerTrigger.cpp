#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int startElement = 1063;
constexpr int endElement = 1064;

int readStart(const QelMessageIterator& cursor, QelSchedulerTrigger& trigger) {
    return cursor.getValueTime(trigger.start, startElement);
}
int writeStart(QelMessageIterator& cursor, const QelSchedulerTrigger& trigger) {
    return trigger.start < 0 ? -1 : cursor.putValueTime(trigger.start, startElement);
}

// A missing or malformed end resets the previous value.
int readEnd(const QelMessageIterator& cursor, QelSchedulerTrigger& trigger) {
    if (cursor.getValueTime(trigger.end, endElement) != 0)
        trigger.end = qelNoTime;
    return 0;
}
int writeEnd(QelMessageIterator& cursor, const QelSchedulerTrigger& trigger) {
    return trigger.end == qelNoTime ? 0 : cursor.putValueTime(trigger.end, endElement);
}

} // namespace

QelSchedulerTrigger::~QelSchedulerTrigger() = default;

template <> struct Wire<QelSchedulerTrigger> : WireWords<QelSchedulerTrigger> {
    static constexpr int nsId = 292, typeId = 294;
    static constexpr QelWireField fields[] = {
        step<&readStart, &writeStart, long>("start", startElement, required).as(time),
        step<&readEnd, &writeEnd, long>("end", endElement, ignored, ifSet).as(time),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSchedulerTrigger>() {
    return wireLayoutOf<QelSchedulerTrigger>;
}

template <> struct Wire<QelSchedulerOnceTrigger> : WireWords<QelSchedulerOnceTrigger> {
    static constexpr int nsId = 283, typeId = 299;
    static constexpr QelWireField fields[] = {base<QelSchedulerTrigger>()};
};
template <> const QelWireLayout& qelWireLayout<QelSchedulerOnceTrigger>() {
    return wireLayoutOf<QelSchedulerOnceTrigger>;
}

template <> struct Wire<QelSchedulerDailyTrigger> : WireWords<QelSchedulerDailyTrigger> {
    static constexpr int nsId = 283, typeId = 295;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        field<&QelSchedulerDailyTrigger::interval>(2095, ignored, ifSet).unchecked(),
        flag<&QelSchedulerDailyTrigger::weekdaysOnly>(2096).unchecked(),
        flag<&QelSchedulerDailyTrigger::weekendsOnly>(2097).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSchedulerDailyTrigger>() {
    return wireLayoutOf<QelSchedulerDailyTrigger>;
}

template <> struct Wire<QelSchedulerWeeklyTrigger> : WireWords<QelSchedulerWeeklyTrigger> {
    static constexpr int nsId = 283, typeId = 296;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        field<&QelSchedulerWeeklyTrigger::weeks>(2098, required, always),
        list<&QelSchedulerWeeklyTrigger::days>(1995, required),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSchedulerWeeklyTrigger>() {
    return wireLayoutOf<QelSchedulerWeeklyTrigger>;
}

template <> struct Wire<QelSchedulerMonthlyTrigger> : WireWords<QelSchedulerMonthlyTrigger> {
    static constexpr int nsId = 283, typeId = 297;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        list<&QelSchedulerMonthlyTrigger::days>(2099, required),
        list<&QelSchedulerMonthlyTrigger::months>(2100, required),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSchedulerMonthlyTrigger>() {
    return wireLayoutOf<QelSchedulerMonthlyTrigger>;
}

template <> struct Wire<QelSchedulerMonthlyDayOfWeekTrigger> : WireWords<QelSchedulerMonthlyDayOfWeekTrigger> {
    static constexpr int nsId = 283, typeId = 298;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        list<&QelSchedulerMonthlyDayOfWeekTrigger::weekDays>(1995, required),
        list<&QelSchedulerMonthlyDayOfWeekTrigger::weekNumbers>(2101, required),
        list<&QelSchedulerMonthlyDayOfWeekTrigger::months>(2100, required),
    };
};
template <> const QelWireLayout& qelWireLayout<QelSchedulerMonthlyDayOfWeekTrigger>() {
    return wireLayoutOf<QelSchedulerMonthlyDayOfWeekTrigger>;
}

template class QelDerivedParserFactory<QelSchedulerTrigger>;

QelDerivedParserFactoryT<QelSchedulerOnceTrigger, QelSchedulerTrigger> factoryQelSchedulerOnceTrigger(false);
QelDerivedParserFactoryT<QelSchedulerDailyTrigger, QelSchedulerTrigger> factoryQelSchedulerDailyTrigger(false);
QelDerivedParserFactoryT<QelSchedulerWeeklyTrigger, QelSchedulerTrigger> factoryQelSchedulerWeeklyTrigger(false);
QelDerivedParserFactoryT<QelSchedulerMonthlyTrigger, QelSchedulerTrigger> factoryQelSchedulerMonthlyTrigger(false);
QelDerivedParserFactoryT<QelSchedulerMonthlyDayOfWeekTrigger, QelSchedulerTrigger>
    factoryQelSchedulerMonthlyDayOfWeekTrigger(false);

} // namespace Qel
