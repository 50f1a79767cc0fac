#pragma once

#include "QelFunctionalityCore/Values/QelFunctional.h"

namespace Qel {

/// Interface of the service that allocates addresses from named pools.  The service declares its operations in a class
/// derived from this.
class QelIPPoolMBase : public QelFunctional {
public:
    ~QelIPPoolMBase() override = 0;
};

} // namespace Qel
