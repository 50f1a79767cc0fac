#include "QelFunctionalityCore/Values/QelFunctional.h"

namespace Qel {

QelFunctional::~QelFunctional() = default;

} // namespace Qel
