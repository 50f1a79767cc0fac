#pragma once

#include <cstddef>

/// What a message may measure.  Both encodings keep to it in both directions: more is refused when it is read, and a
/// tree that could not be read back is not written.
namespace Qel::QelLimits {

/// Bytes of one message, as text or in binary form.
inline constexpr std::size_t messageBytes = std::size_t{64} << 20;

/// Levels of elements, the root not counted.
inline constexpr unsigned depth = 256;

/// Attributes of one element.
inline constexpr unsigned attributes = 64;

} // namespace Qel::QelLimits
