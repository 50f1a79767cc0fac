#pragma once

/// Element IDs and layout of vocabularies.  Layout of a message with a single vocabulary, and of one with several:
///
///     /  data  agent  category... parameter...
///     /  vocabulary...  name category... parameter...
///
/// A category or parameter has an `id`.  A nested `category` contains the name of a category that it belongs to; the
/// optional `data` of a parameter contains its value.
namespace Qel::VocabularyElement {

/// Name of a child of a parameter that describes a counter: values are integers (1) or doubles (0).  It has no ID.
inline constexpr const char* valueType = "value_type";

} // namespace Qel::VocabularyElement
