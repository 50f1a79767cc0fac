#pragma once

#include "QelFunctionalityCore/Values/QelFunctional.h"

namespace Qel {

/// Base class of the service that allocates addresses from named pools; the service declares its operations in a
/// derived class.
class QelIPPoolMBase : public QelFunctional {
public:
    ~QelIPPoolMBase() override = 0;
};

} // namespace Qel
