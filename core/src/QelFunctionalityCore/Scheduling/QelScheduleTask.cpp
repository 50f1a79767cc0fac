#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr bool isTime(long time) {
    return time != qelNoTime;
}

} // namespace

template <> struct Wire<QelScheduleTask> : WireWords<QelScheduleTask> {
    static constexpr QelWireField fields[] = {
        field<&QelScheduleTask::id>(1010, ignored, ifSet),
        field<&QelScheduleTask::taskName>(2092, ignored, ifSet, base64),
        field<&QelScheduleTask::description>(1496, ignored, ifSet, base64),
        field<&QelScheduleTask::category>(1264, ignored, ifSet),
        wrappedDerivedList<&QelScheduleTask::triggers, false>(2093, 2094, required, ifSet).filled(),
        fieldIf<&QelScheduleTask::taskTime, isTime>(2001, ignored, WireWords::time),
        field<&QelScheduleTask::disabled>(1705, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelScheduleTask>() {
    return wireLayoutOf<QelScheduleTask>;
}

} // namespace Qel
