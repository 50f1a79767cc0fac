#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelEnvelope.h"
#include "QelMessage/QelMessageTree.h"

/// The text form of an element or of a whole message: XML 1.0 with namespaces. docs/text-form.md specifies the format.
///
/// A written tree reads back equal. Functions return nonzero on failure, with an error message. For a failed read, it
/// contains the line and column, and nothing has changed.
namespace Qel::QelTextCodec {

/// Writes the whole message as a document with the root element `message`.
[[nodiscard]] int writeMessage(const QelMessageTree& tree, const QelEnvelope& envelope, std::string& text);

/// Writes one element with its subtree as a document.
[[nodiscard]] int writeElement(const QelMessageTree& tree, QelMessageTree::Index element, std::string& text);

/// Writes the value and children of an element, without the element itself.
[[nodiscard]] int writeContent(const QelMessageTree& tree, QelMessageTree::Index element, std::string& text);

/// Reads a document with the root element `message` into an empty tree.
[[nodiscard]] int readMessage(std::string_view text, QelMessageTree& tree, QelEnvelope& envelope);

/// Appends the root element of a document as a child.
[[nodiscard]] int readChild(std::string_view text, QelMessageTree& tree, QelMessageTree::Index parent);

/// Replaces the value and children of an element with the output of writeContent(). Names without a prefix are in the
/// element's namespace unless the text declares another default namespace.
[[nodiscard]] int replaceContent(std::string_view text, QelMessageTree& tree, QelMessageTree::Index element);

} // namespace Qel::QelTextCodec
