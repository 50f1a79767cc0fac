#pragma once

/// Element IDs and layout of vocabularies.  Layout of a message with a single vocabulary, and of one with several:
///
///     /  data  agent  category... parameter...
///     /  vocabulary...  name category... parameter...
///
/// A category or parameter has an `id`.  A nested `category` contains the name of a category that it belongs to; the
/// optional `data` of a parameter contains its value.
namespace Qel::VocabularyElement {

inline constexpr int id = 1010;
inline constexpr int parameter = 1017;
inline constexpr int name = 1026;
inline constexpr int agent = 1044;
inline constexpr int version = 1223; ///< of a standalone QelVocID; a vocabulary stores it in a parameter
inline constexpr int category = 1264;
inline constexpr int data = 1307;
inline constexpr int vocabulary = 1871;

/// Name of a child of a parameter that describes a counter: values are integers (1) or doubles (0).  It has no ID.
inline constexpr const char* valueType = "value_type";

} // namespace Qel::VocabularyElement
