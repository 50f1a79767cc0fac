#include "QelCore/TestCache.h"

#include "QelCore/QelCacheLogicImpl.h"

namespace Qel {

template class QelCacheLogic<QelGUIDBase, TestRecord, QelMappedMemoryManager>;

} // namespace Qel
