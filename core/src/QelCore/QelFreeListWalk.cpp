#include "QelCore/QelFreeListWalk.h"

namespace Qel {

QelFreeListWalk::Path& QelFreeListWalk::Path::ofThisThread() noexcept {
    thread_local Path path;
    return path;
}

const QelFreeListWalk::Step* QelFreeListWalk::Path::correct(const Step* step, Heap heap) noexcept {
    const bool remembered = step->offset <= heap.last;
    const std::uint32_t offset = remembered ? step->offset : step[-1].next;
    if (!remembered && offset == 0)
        return standAside({}, 0);
    if (offset > heap.last) {
        isBroken = true;
        return standAside({}, 0);
    }
    const Step seen = heap.read(offset);
    if (!heap.leadsOn(seen)) {
        isBroken = true;
        return standAside(seen, 0);
    }
    if (!remembered)
        return standAside(seen, unknown);
    learn(begin() + (step - begin()), seen);
    return step;
}

void QelFreeListWalk::Path::renew(const Step* step, Heap heap) noexcept {
    if (step == m_aside.data() || step == m_aside.data() + 1)
        return;
    const std::ptrdiff_t place = step - begin();
    for (Step* known = begin() + place - 1; known < end() && known <= begin() + place; ++known) {
        const Step seen = heap.read(known->offset);
        if (!heap.leadsOn(seen))
            return;
        if (*known != seen)
            learn(known, seen);
    }
}

/// Where a walk stands that left the list, with the offset of what follows.
const QelFreeListWalk::Step* QelFreeListWalk::Path::standAside(const Step& step, std::uint32_t nextOffset) noexcept {
    m_aside = {step, Step{nextOffset}};
    return m_aside.data();
}

/// Takes `seen` for `step`.  If that is followed by another block now, then most often one came between two known ones,
/// or some went, so what comes behind them is kept.
void QelFreeListWalk::Path::learn(Step* step, const Step& seen) noexcept {
    constexpr std::ptrdiff_t mostGone = 8;
    *step = seen;
    Step* const place = step + 1;
    if (place->offset == seen.next)
        return;
    Step* const limit = place + std::min(mostGone, end() - place);
    Step* const known = std::find_if(place, limit, [&](const Step& other) { return other.offset == seen.next; });
    if (seen.next == 0)
        cut(place, 0);
    else if (known != limit)
        m_count = std::copy(known, end() + 1, place) - 1 - begin();
    else if (place == begin() + capacity)
        cut(place, unknown);
    else
        insert(place, seen.next);
}

/// Forgets the steps from `place` on; `offset` tells what comes instead of them.
void QelFreeListWalk::Path::cut(Step* place, std::uint32_t offset) noexcept {
    m_count = place - begin();
    *place = Step{offset};
}

void QelFreeListWalk::Path::insert(Step* place, std::uint32_t offset) noexcept {
    if (m_count == capacity)
        cut(end() - 1, unknown);
    std::copy_backward(place, end() + 1, end() + 2);
    ++m_count;
    *place = Step{offset};
}

} // namespace Qel
