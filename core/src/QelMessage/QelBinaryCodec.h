#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "QelMessage/QelEnvelope.h"
#include "QelMessage/QelMessageTree.h"

/// The binary form of an element or of a whole message.  docs/binary-form.md tells every byte.
///
/// The same tree gives the same bytes, on every machine and in every process.  Reading trusts nothing: it checks the
/// whole buffer before it builds anything, and allocates no more than the elements that are really there need.
namespace Qel::QelBinaryCodec {

/// True if the bytes begin as the binary form does, and so can't be text.
[[nodiscard]] bool looksBinary(std::string_view bytes) noexcept;

/// Bytes that write() will fill for the element.  With an envelope it is written as a whole message, whose root it is.
/// Nonzero, with an error message, if the tree is beyond QelLimits.
[[nodiscard]] int measure(const QelMessageTree& tree, QelMessageTree::Index element, const QelEnvelope* envelope,
                          std::size_t& size);

/// Writes the bytes into a buffer that is large enough, and stores their number.  Fails as measure() does, and like
/// that allocates nothing.
[[nodiscard]] int write(const QelMessageTree& tree, QelMessageTree::Index element, const QelEnvelope* envelope,
                        char* buffer, std::size_t& size);

/// Reads a buffer into a tree that is still empty.  What was one element stands below the root; `envelope` is then left
/// as it is.  Nonzero, with an error message that names the byte, if the buffer is malformed; then nothing has changed.
[[nodiscard]] int readMessage(std::string_view bytes, QelMessageTree& tree, QelEnvelope& envelope);

/// Adds what the buffer holds as a child; a whole message is an element named "message".  Results as of readMessage().
[[nodiscard]] int readChild(std::string_view bytes, QelMessageTree& tree, QelMessageTree::Index parent);

/// The checksum that belongs into a buffer with this content, at offset 8.
[[nodiscard]] std::uint32_t checksum(std::string_view bytes) noexcept;

} // namespace Qel::QelBinaryCodec
