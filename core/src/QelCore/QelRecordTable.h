#pragma once

#include <cstddef>
#include <span>

namespace Qel {

/// Moves within a table of records of 20 bytes: a key of 16, then a self-relative pointer of 4.
///
/// Each operation does to `count` records what assigning them one by one would do: keys are copied, and each pointer
/// goes on pointing where it did, from its new place.  All of them move by the same distance, so each changes by the
/// same constant, and several records go at once.
namespace QelRecordTable {

inline constexpr std::size_t keyBytes = 16;
inline constexpr std::size_t recordBytes = 20;

/// Starts with the lowest record: `target` may overlap `source` from below.
void moveUpwards(const void* source, void* target, std::size_t count) noexcept;

/// Starts with the highest record: `target` may overlap `source` from above.
void moveDownwards(const void* source, void* target, std::size_t count) noexcept;

/// The two operations, for vectors of one width.
struct Mover {
    const char* instructions; ///< name of what the processor has to understand
    void (*upwards)(const void* source, void* target, std::size_t count) noexcept;
    void (*downwards)(const void* source, void* target, std::size_t count) noexcept;
};

/// Those that this processor understands, the fastest first.  The operations above take that one.
[[nodiscard]] std::span<const Mover> movers() noexcept;

} // namespace QelRecordTable

} // namespace Qel
