#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelFunctional.h"

namespace Qel {

/// Base class of the service that allocates addresses from named pools; the service declares its operations in a
/// derived class.
class QEL_EXPORT QelIPPoolMBase : public QelFunctional {
public:
    ~QelIPPoolMBase() override = 0;
};

} // namespace Qel
