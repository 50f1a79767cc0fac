#pragma once

/// The element IDs of vocabularies, and how they are laid out.  One vocabulary in a message of its own, and several in
/// one:
///
///     /  data  agent  category... parameter...
///     /  vocabulary...  name category... parameter...
///
/// A category or parameter has an `id`; a `category` within it names a category to which it belongs, and the `data`
/// within a parameter is its value, if it has one.
namespace Qel::VocabularyElement {

inline constexpr int id = 1010;
inline constexpr int parameter = 1017;
inline constexpr int name = 1026;
inline constexpr int agent = 1044;
inline constexpr int version = 1223; ///< of a QelVocID that stands alone; within a vocabulary a parameter tells it
inline constexpr int category = 1264;
inline constexpr int data = 1307;
inline constexpr int vocabulary = 1871;

/// Within a parameter that is a counter: whether its values are integers (1) or doubles (0).  The element has no ID.
inline constexpr const char* valueType = "value_type";

} // namespace Qel::VocabularyElement
