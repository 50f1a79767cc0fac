#include "QelCore/QelForkableRefCounter.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <pthread.h>

#include "QelCommon/Debug.h"

namespace Qel {

/// Registry of all live objects of the process: a doubly linked list in no particular order.
struct ForkRegistry {
    std::mutex mutex;
    QelForkableRefCounter* first = nullptr;
    /// Next object to visit in the child of a fork; advanced if a `reinit()` destroys that object.
    QelForkableRefCounter* cursor = nullptr;

    /// Leaked on purpose: objects may still be destroyed while other static objects are.
    static ForkRegistry& instance() {
        static ForkRegistry* registry = create();
        return *registry;
    }

    void add(QelForkableRefCounter& object) {
        const std::lock_guard guard(mutex);
        object.m_next = first;
        if (first)
            first->m_previous = &object;
        first = &object;
    }

    void remove(QelForkableRefCounter& object) {
        const std::lock_guard guard(mutex);
        if (cursor == &object)
            cursor = object.m_next;
        (object.m_previous ? object.m_previous->m_next : first) = object.m_next;
        if (object.m_next)
            object.m_next->m_previous = object.m_previous;
    }

private:
    static ForkRegistry* create() {
        auto* registry = new ForkRegistry;
        const int failed = pthread_atfork([] { instance().mutex.lock(); }, [] { instance().mutex.unlock(); },
                                          [] { instance().reinitAll(); });
        QEL_CHECK(failed == 0, "core/src/QelCore/QelForkableRefCounter");
        return registry;
    }

    void reinitAll() {
        mutex.unlock();
        for (cursor = first; cursor;) {
            QelForkableRefCounter* object = cursor;
            cursor = object->m_next;
            if (!object->isOwned())
                continue;
            const boost::intrusive_ptr<QelForkableRefCounter> kept(object);
            object->reinit();
        }
    }
};

QelForkableRefCounter::QelForkableRefCounter() {
    ForkRegistry::instance().add(*this);
}

QelForkableRefCounter::~QelForkableRefCounter() {
    ForkRegistry::instance().remove(*this);
}

int QelForkableRefCounter::reinit() {
    return 0;
}

std::mutex& QelForkableRefCounter::forkMutex() {
    return ForkRegistry::instance().mutex;
}

} // namespace Qel
