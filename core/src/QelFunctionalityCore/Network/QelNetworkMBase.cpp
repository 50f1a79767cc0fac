#include "QelFunctionalityCore/Network/QelNetworkMBase.h"

namespace Qel {

QelNetworkMBase::~QelNetworkMBase() = default;

} // namespace Qel
