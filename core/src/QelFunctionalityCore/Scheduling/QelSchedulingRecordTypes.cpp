#include "QelFunctionalityCore/QelFamilyRecordTypes.h"
#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"

namespace Qel {

namespace {

// Reads a record of an abstract base: the element's complex type selects the derived class and its table.
template <class Base> struct AnyReader {
    int operator()(const QelMessageIterator& cursor, boost::shared_ptr<Base>& record) const {
        return QelReaderDerived<Base>(false)(cursor, record);
    }
};
template <class Base> QelRecordType anyOf() {
    const QelWireLayout& layout = Base::wire;
    QelRecordType type =
        makeRecordType<boost::shared_ptr<Base>, AnyReader<Base>, QelWriterDerived<Base>>(layout.typeName);
    type.nsId = layout.nsId;
    type.typeId = layout.typeId;
    type.record = &typeid(Base);
    return type;
}

} // namespace

std::vector<QelRecordType> schedulingRecordTypes() {
    return {
        tableRecordType<QelScheduleTask>(),
        tableRecordType<QelSchedulerDailyTrigger>(),
        tableRecordType<QelSchedulerMonthlyDayOfWeekTrigger>(),
        tableRecordType<QelSchedulerMonthlyTrigger>(),
        tableRecordType<QelSchedulerOnceTrigger>(),
        tableRecordType<QelSchedulerWeeklyTrigger>(),
        anyOf<QelSchedulerTrigger>(),
    };
}

} // namespace Qel
