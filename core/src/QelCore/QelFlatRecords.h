#pragma once

#include <cstddef>
#include <span>

#include "QelCommon/Export.h"

namespace Qel {

/// Moves the entries of a QelFlatSortedArray: 20 bytes each, a 16-byte key followed by a 4-byte self-relative pointer.
///
/// Each operation is equivalent to assigning `count` entries one by one: keys are copied, and pointers are adjusted so
/// that they keep their target.  All entries move by the same distance, so every pointer changes by the same constant,
/// and SIMD code moves several entries at once.
namespace QelFlatRecords {

inline constexpr std::size_t keyBytes = 16;
inline constexpr std::size_t recordBytes = 20;

/// Moves entries in ascending order, as std::move does: `target` may overlap `source` if it is at a lower address.
QEL_EXPORT void moveForward(const void* source, void* target, std::size_t count) noexcept;

/// Moves entries in descending order, as std::move_backward does: `target` may overlap `source` if it is at a higher
/// address.  Unlike with std::move_backward, `source` and `target` are the starts of the ranges.
QEL_EXPORT void moveBackward(const void* source, void* target, std::size_t count) noexcept;

/// The two operations, implemented for one instruction set.
struct Mover {
    const char* instructions; ///< name of the required instruction set
    void (*forward)(const void* source, void* target, std::size_t count) noexcept;
    void (*backward)(const void* source, void* target, std::size_t count) noexcept;
};

/// The implementations that this processor supports, fastest first.  The operations above use the first one.
QEL_EXPORT [[nodiscard]] std::span<const Mover> movers() noexcept;

} // namespace QelFlatRecords

} // namespace Qel
