#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelFunctional.h"

namespace Qel {

/// Base class of the service that owns a host's network devices; the service declares its operations in a derived
/// class.
class QEL_EXPORT QelNetworkMBase : public QelFunctional {
public:
    ~QelNetworkMBase() override = 0;
};

} // namespace Qel
