#pragma once

#include <cstddef>

/// Limits of a message. Both encodings enforce them in both directions: a larger message is rejected when it is read,
/// and a tree that could not be read back is not written.
namespace Qel::QelLimits {

/// Size of a message in bytes, in text or binary form.
inline constexpr std::size_t messageBytes = std::size_t{64} << 20;

/// Number of elements of a message, including the root. Bounds the memory for parsing: an element of four bytes in text
/// form occupies 130 bytes of memory while it is parsed.
inline constexpr std::size_t elements = std::size_t{4} << 20;

/// Nesting depth, not counting the root.
inline constexpr unsigned depth = 256;

/// Number of attributes of an element.
inline constexpr unsigned attributes = 64;

} // namespace Qel::QelLimits
