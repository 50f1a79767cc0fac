#pragma once

#include "QelFunctionalityCore/Values/QelFunctional.h"

namespace Qel {

/// Interface of the service that owns a host's network devices.  The service declares its operations in a class derived
/// from this.
class QelNetworkMBase : public QelFunctional {
public:
    ~QelNetworkMBase() override = 0;
};

} // namespace Qel
