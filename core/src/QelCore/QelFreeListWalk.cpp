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
        return setDetour({}, 0);
    if (offset > heap.last) {
        isBroken = true;
        return setDetour({}, 0);
    }
    const Step seen = heap.read(offset);
    if (!heap.isPlausible(seen)) {
        isBroken = true;
        return setDetour(seen, 0);
    }
    if (!remembered)
        return setDetour(seen, unknown);
    learn(begin() + (step - begin()), seen);
    return step;
}

void QelFreeListWalk::Path::refresh(const Step* step, Heap heap) noexcept {
    if (step == m_detour.data() || step == m_detour.data() + 1)
        return;
    const std::ptrdiff_t place = step - begin();
    for (Step* known = begin() + place - 1; known < end() && known <= begin() + place; ++known) {
        const Step seen = heap.read(known->offset);
        if (!heap.isPlausible(seen))
            return;
        if (*known != seen)
            learn(known, seen);
    }
}

/// Makes `step`, which is not in the remembered list, the current step, followed by the step at `nextOffset`.
const QelFreeListWalk::Step* QelFreeListWalk::Path::setDetour(const Step& step, std::uint32_t nextOffset) noexcept {
    m_detour = {step, Step{nextOffset}};
    return m_detour.data();
}

/// Replaces `step` by `seen`.  If its successor changed, most often one block was inserted between two known ones or a
/// few were removed, so the remembered steps after them are kept.
void QelFreeListWalk::Path::learn(Step* step, const Step& seen) noexcept {
    constexpr std::ptrdiff_t mostRemoved = 8;
    *step = seen;
    Step* const place = step + 1;
    if (place->offset == seen.next)
        return;
    Step* const limit = place + std::min(mostRemoved, end() - place);
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

/// Discards the steps from `place` on and ends the list with `offset`.
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
