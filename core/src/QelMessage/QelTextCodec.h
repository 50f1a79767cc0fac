#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelEnvelope.h"
#include "QelMessage/QelMessageTree.h"

/// The text form of an element or of a whole message: XML 1.0 with namespaces.  docs/text-form.md tells it.
///
/// What is written is read back to an equal tree.  Results are nonzero on failure, with an error message; one of
/// reading names line and column, and then nothing has changed.
namespace Qel::QelTextCodec {

/// The whole message as a document, whose element is `message`.
[[nodiscard]] int writeMessage(const QelMessageTree& tree, const QelEnvelope& envelope, std::string& text);

/// One element alone as a document.
[[nodiscard]] int writeElement(const QelMessageTree& tree, QelMessageTree::Index element, std::string& text);

/// The value and children of an element, without it.
[[nodiscard]] int writeContent(const QelMessageTree& tree, QelMessageTree::Index element, std::string& text);

/// Reads a document whose element is `message` into a tree that is still empty.
[[nodiscard]] int readMessage(std::string_view text, QelMessageTree& tree, QelEnvelope& envelope);

/// Adds the element of a document as a child.
[[nodiscard]] int readChild(std::string_view text, QelMessageTree& tree, QelMessageTree::Index parent);

/// Puts what writeContent() wrote in place of an element's value and children.  Names without a prefix are in the
/// element's namespace unless the text tells another.
[[nodiscard]] int replaceContent(std::string_view text, QelMessageTree& tree, QelMessageTree::Index element);

} // namespace Qel::QelTextCodec
