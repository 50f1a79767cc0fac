#include "QelCore/QelSortOrder.h"

namespace Qel {

int sort_order_by_veid = 0;

} // namespace Qel
