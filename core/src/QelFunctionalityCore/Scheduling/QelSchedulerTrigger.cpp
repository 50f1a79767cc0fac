#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"

#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readStart(const QelMessageIterator& cursor, QelSchedulerTrigger& trigger) {
    return cursor.getValueTime(trigger.start, "start_time"_element);
}
int writeStart(QelMessageIterator& cursor, const QelSchedulerTrigger& trigger) {
    return trigger.start < 0 ? -1 : cursor.putValueTime(trigger.start, "start_time"_element);
}

// A missing or malformed end resets the previous value.
int readEnd(const QelMessageIterator& cursor, QelSchedulerTrigger& trigger) {
    if (cursor.getValueTime(trigger.end, "end_time"_element) != 0)
        trigger.end = qelNoTime;
    return 0;
}
int writeEnd(QelMessageIterator& cursor, const QelSchedulerTrigger& trigger) {
    return trigger.end == qelNoTime ? 0 : cursor.putValueTime(trigger.end, "end_time"_element);
}

} // namespace

QelSchedulerTrigger::~QelSchedulerTrigger() = default;

template <> struct Wire<QelSchedulerTrigger> : WireWords<QelSchedulerTrigger> {
    static constexpr int nsId = 292, typeId = 294;
    static constexpr QelWireField fields[] = {
        step<&readStart, &writeStart, long>("start", "start_time"_element, required).withForm(time),
        step<&readEnd, &writeEnd, long>("end", "end_time"_element, ignored, ifSet).withForm(time),
    };
};
const QelWireLayout& QelSchedulerTrigger::wire = wireLayoutOf<QelSchedulerTrigger>;

template <> struct Wire<QelSchedulerOnceTrigger> : WireWords<QelSchedulerOnceTrigger> {
    static constexpr int nsId = 283, typeId = 299;
    static constexpr QelWireField fields[] = {base<QelSchedulerTrigger>()};
};
const QelWireLayout& QelSchedulerOnceTrigger::wire = wireLayoutOf<QelSchedulerOnceTrigger>;

template <> struct Wire<QelSchedulerDailyTrigger> : WireWords<QelSchedulerDailyTrigger> {
    static constexpr int nsId = 283, typeId = 295;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        field<&R::interval>(2095, ignored, ifSet).bestEffort(),
        flag<&R::weekdaysOnly>(2096).bestEffort(),
        flag<&R::weekendsOnly>(2097).bestEffort(),
    };
};
const QelWireLayout& QelSchedulerDailyTrigger::wire = wireLayoutOf<QelSchedulerDailyTrigger>;

template <> struct Wire<QelSchedulerWeeklyTrigger> : WireWords<QelSchedulerWeeklyTrigger> {
    static constexpr int nsId = 283, typeId = 296;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        field<&R::weeks>(2098, required, always),
        list<&R::days>(1995, required),
    };
};
const QelWireLayout& QelSchedulerWeeklyTrigger::wire = wireLayoutOf<QelSchedulerWeeklyTrigger>;

template <> struct Wire<QelSchedulerMonthlyTrigger> : WireWords<QelSchedulerMonthlyTrigger> {
    static constexpr int nsId = 283, typeId = 297;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        list<&R::days>(2099, required),
        list<&R::months>(2100, required),
    };
};
const QelWireLayout& QelSchedulerMonthlyTrigger::wire = wireLayoutOf<QelSchedulerMonthlyTrigger>;

template <> struct Wire<QelSchedulerMonthlyDayOfWeekTrigger> : WireWords<QelSchedulerMonthlyDayOfWeekTrigger> {
    static constexpr int nsId = 283, typeId = 298;
    static constexpr QelWireField fields[] = {
        base<QelSchedulerTrigger>(),
        list<&R::weekDays>(1995, required),
        list<&R::weekNumbers>(2101, required),
        list<&R::months>(2100, required),
    };
};
const QelWireLayout& QelSchedulerMonthlyDayOfWeekTrigger::wire = wireLayoutOf<QelSchedulerMonthlyDayOfWeekTrigger>;

template class QelDerivedParserFactory<QelSchedulerTrigger>;

QelDerivedParserFactoryT<QelSchedulerOnceTrigger, QelSchedulerTrigger> factoryQelSchedulerOnceTrigger(false);
QelDerivedParserFactoryT<QelSchedulerDailyTrigger, QelSchedulerTrigger> factoryQelSchedulerDailyTrigger(false);
QelDerivedParserFactoryT<QelSchedulerWeeklyTrigger, QelSchedulerTrigger> factoryQelSchedulerWeeklyTrigger(false);
QelDerivedParserFactoryT<QelSchedulerMonthlyTrigger, QelSchedulerTrigger> factoryQelSchedulerMonthlyTrigger(false);
QelDerivedParserFactoryT<QelSchedulerMonthlyDayOfWeekTrigger, QelSchedulerTrigger>
    factoryQelSchedulerMonthlyDayOfWeekTrigger(false);

} // namespace Qel
