#pragma once

#include <mutex>

#include "QelCore/QelRefCounter.h"

namespace Qel {

/// Base of reference-counted objects that must learn of a fork.
///
/// Every live object is known to one registry of the process.  In the child of a fork `reinit()` is called once on each
/// of them, before fork() returns there; the parent notices nothing.  An object that nobody owns at that moment is
/// passed over: another thread of the parent was making or destroying it, and in the child nobody will ever finish
/// that.
class QelForkableRefCounter : public QelRefCounter {
public:
    QelForkableRefCounter();
    ~QelForkableRefCounter() override;

    /// Gives up whatever belongs to the parent of a fork.  Runs in the child, on its only thread.  0 for success.
    virtual int reinit();

protected:
    /// A mutex that no thread holds across a fork: for state of the process that a child must find whole.  Nothing else
    /// may be locked and no object of this class made or destroyed while it is held.
    [[nodiscard]] static std::mutex& forkMutex();

private:
    friend struct ForkRegistry;

    QelForkableRefCounter* m_previous = nullptr;
    QelForkableRefCounter* m_next = nullptr;
};

} // namespace Qel
