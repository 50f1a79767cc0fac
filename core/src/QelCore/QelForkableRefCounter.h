#pragma once

#include <mutex>

#include "QelCommon/Export.h"
#include "QelCore/QelRefCounter.h"

namespace Qel {

/// Base of reference-counted objects that are notified of a fork.
///
/// Every live object is in one process-wide registry.  In the child of a fork, `reinit()` is called once on each of
/// them before fork() returns; the parent is not affected.  Objects without an owner at that moment are skipped:
/// another thread of the parent was constructing or destroying them, which will never complete in the child.
class QEL_EXPORT QelForkableRefCounter : public QelRefCounter {
public:
    QelForkableRefCounter();
    ~QelForkableRefCounter() override;

    /// Releases everything that belongs to the parent of a fork.  Runs in the child, on its only thread.  Returns 0 on
    /// success.
    virtual int reinit();

protected:
    /// A mutex that is not held by any thread across a fork, for process-wide state that must be consistent in the
    /// child.  While holding it, no other lock may be acquired and no object of this class constructed or destroyed.
    [[nodiscard]] static std::mutex& forkMutex();

private:
    friend struct ForkRegistry;

    QelForkableRefCounter* m_previous = nullptr;
    QelForkableRefCounter* m_next = nullptr;
};

} // namespace Qel
