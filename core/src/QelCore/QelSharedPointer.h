#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "QelCommon/Debug.h"

namespace Qel {

/// A self-relative pointer in a mapped file: the distance in bytes from its own address to its target, as a signed
/// 32-bit integer.  It is valid in every process, at any mapping address.
///
/// Distance 1 is null.  No target can have it, because pointers and targets are aligned to at least 4.  Distance 0, the
/// value of zeroed memory, points to the pointer itself.
///
/// The value depends on the address of the pointer, so assignment recomputes it, and there is neither a copy nor a move
/// constructor.  Use a raw pointer outside the mapping, where the target may be out of range of 32 bits.
template <class T> class pointer_type {
public:
    using element_type = T;

    static constexpr std::int32_t nullDistance = 1;

    /// Points to itself.
    constexpr pointer_type() noexcept = default;
    explicit pointer_type(T* place) { *this = place; }
    pointer_type(const pointer_type&) = delete;
    pointer_type(pointer_type&&) = delete;

    pointer_type& operator=(const pointer_type& other) { return *this = other.get(); } // NOLINT: no state to protect
    pointer_type& operator=(T* place) {
        m_distance = place ? distanceTo(place) : nullDistance;
        return *this;
    }

    /// Address of the target in this mapping, or null.
    [[nodiscard]] T* get() const noexcept { return m_distance == nullDistance ? nullptr : target(); }
    /// Requires a non-null pointer.
    [[nodiscard]] T& operator*() const noexcept { return *target(); }
    [[nodiscard]] T* operator->() const noexcept { return target(); }
    [[nodiscard]] explicit operator bool() const noexcept { return m_distance != nullDistance; }

private:
    [[nodiscard]] std::uintptr_t address() const noexcept { return reinterpret_cast<std::uintptr_t>(this); }
    [[nodiscard]] T* target() const noexcept {
        return reinterpret_cast<T*>(address() + static_cast<std::uintptr_t>(static_cast<std::intptr_t>(m_distance)));
    }

    std::int32_t distanceTo(const T* place) const {
        const auto distance = static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(place) - address());
        if constexpr (sizeof distance > sizeof m_distance)
            QEL_CHECK(distance >= std::numeric_limits<std::int32_t>::min() &&
                          distance <= std::numeric_limits<std::int32_t>::max(),
                      "core/src/QelCore/QelSharedMemoryManager");
        return static_cast<std::int32_t>(distance);
    }

    std::int32_t m_distance = 0; ///< bytes from this object to the target; format
};

static_assert(sizeof(pointer_type<int>) == 4 && alignof(pointer_type<int>) == 4);
static_assert(!std::is_copy_constructible_v<pointer_type<int>> && !std::is_move_constructible_v<pointer_type<int>>);

} // namespace Qel
