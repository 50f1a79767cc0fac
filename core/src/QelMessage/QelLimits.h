#pragma once

#include <cstddef>

/// What a message may measure.  Both encodings keep to it in both directions: more is refused when it is read, and a
/// tree that could not be read back is not written.
namespace Qel::QelLimits {

/// Bytes of one message, as text or in binary form.
inline constexpr std::size_t messageBytes = std::size_t{64} << 20;

/// Elements of one message, its root included.  Four bytes of text can be an element, which takes 130 bytes of memory
/// while it is parsed.
inline constexpr std::size_t elements = std::size_t{4} << 20;

/// Levels of elements, the root not counted.
inline constexpr unsigned depth = 256;

/// Attributes of one element.
inline constexpr unsigned attributes = 64;

} // namespace Qel::QelLimits
