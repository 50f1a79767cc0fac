#pragma once

namespace Qel {

/// Root of the interfaces that the agent's services implement.  Who holds a service by this destroys it by this.
class QelFunctional {
public:
    QelFunctional(const QelFunctional&) = delete;
    QelFunctional& operator=(const QelFunctional&) = delete;
    virtual ~QelFunctional() = 0;

protected:
    QelFunctional() = default;
};

} // namespace Qel
