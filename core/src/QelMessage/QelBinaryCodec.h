#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "QelMessage/QelEnvelope.h"
#include "QelMessage/QelMessageTree.h"

/// The binary form of an element or of a whole message. docs/binary-form.md specifies the format.
///
/// Encoding is deterministic: equal trees give equal bytes on every machine and in every process. Decoding treats the
/// input as untrusted: it validates the whole buffer before it builds anything, and the memory it allocates is
/// proportional to the elements that are actually present.
namespace Qel::QelBinaryCodec {

/// True if the bytes start with the magic number of the binary form. No valid text starts with it.
[[nodiscard]] bool looksBinary(std::string_view bytes) noexcept;

/// Computes the number of bytes that write() produces for the element. With an envelope, the element is encoded as the
/// root of a whole message. Nonzero, with an error message, if the tree exceeds QelLimits.
[[nodiscard]] int measure(const QelMessageTree& tree, QelMessageTree::Index element, const QelEnvelope* envelope,
                          std::size_t& size);

/// Writes the binary form to a buffer that must be large enough, and stores its length in `size`. Fails under the same
/// conditions as measure(). Neither function allocates memory.
[[nodiscard]] int write(const QelMessageTree& tree, QelMessageTree::Index element, const QelEnvelope* envelope,
                        char* buffer, std::size_t& size);

/// Decodes a buffer into an empty tree. A single element becomes a child of the root, and `envelope` is left unchanged.
/// If the buffer is malformed, returns nonzero with an error message that contains the byte offset, and changes
/// nothing.
[[nodiscard]] int readMessage(std::string_view bytes, QelMessageTree& tree, QelEnvelope& envelope);

/// Decodes a buffer and appends its element as a child. A whole message becomes an element named "message". Results are
/// those of readMessage().
[[nodiscard]] int readChild(std::string_view bytes, QelMessageTree& tree, QelMessageTree::Index parent);

/// The checksum of a buffer, to be stored at offset 8.
[[nodiscard]] std::uint32_t checksum(std::string_view bytes) noexcept;

} // namespace Qel::QelBinaryCodec
