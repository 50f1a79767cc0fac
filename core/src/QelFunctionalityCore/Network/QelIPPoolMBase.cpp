#include "QelFunctionalityCore/Network/QelIPPoolMBase.h"

namespace Qel {

QelIPPoolMBase::~QelIPPoolMBase() = default;

} // namespace Qel
