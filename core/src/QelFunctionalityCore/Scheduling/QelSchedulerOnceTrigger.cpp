#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"

namespace Qel {

int QelSchedulerOnceTrigger::getNextRunTime(long now, long& next) const {
    if (now < 0)
        return -1;
    next = start > now ? start : qelNoTime;
    return 0;
}

} // namespace Qel
