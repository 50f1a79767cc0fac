#pragma once

#include "QelCommon/Export.h"

namespace Qel {

/// Base class of the interfaces that the agent's services implement.  A service may be deleted through a pointer to
/// this class.
class QEL_EXPORT QelFunctional {
public:
    QelFunctional(const QelFunctional&) = delete;
    QelFunctional& operator=(const QelFunctional&) = delete;
    virtual ~QelFunctional() = 0;

protected:
    QelFunctional() = default;
};

} // namespace Qel
