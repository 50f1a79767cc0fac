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
        field<&R::id>(1010, ignored, ifSet),
        field<&R::taskName>(2092, ignored, ifSet, base64),
        field<&R::description>(1496, ignored, ifSet, base64),
        field<&R::category>(1264, ignored, ifSet),
        wrappedDerivedList<&R::triggers, false>(2093, 2094, required, ifSet).nonEmpty(),
        fieldIf<&R::taskTime, isTime>(2001, ignored, WireWords::time),
        field<&R::disabled>(1705, ignored, ifSet),
    };
};
const QelWireLayout& QelScheduleTask::wire = wireLayoutOf<QelScheduleTask>;

} // namespace Qel
