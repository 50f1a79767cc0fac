#pragma once

#include <span>
#include <string>
#include <string_view>

/// The vocabulary of message trees: readable names of the IDs that elements, namespaces, complex types and attributes
/// have on the wire.
///
/// An ID and its name are two spellings of one thing: `name` is element 1026.  A letter and the ID (`e1026`, `n292`,
/// `t122`, `a7`) is understood wherever a name is, for every positive ID whether the tables name it or not, and it is
/// what an ID without a name prints as.  A text that is neither is a legal name too, only without an ID: sections and
/// options of a configuration are such (`system`, `log_level`).
///
/// Element names are distinct among elements, namespace names among namespaces, and so on; one word may name an element
/// and a type.  The tables are constant data: they may be used during static initialisation and by any thread.
namespace Qel::QelNames {

struct Entry {
    int id;
    std::string_view name;
};

/// The IDs that have a name, in ascending order.
[[nodiscard]] std::span<const Entry> elements() noexcept;
[[nodiscard]] std::span<const Entry> namespaces() noexcept;
[[nodiscard]] std::span<const Entry> types() noexcept;
/// Empty: no record uses an attribute.
[[nodiscard]] std::span<const Entry> attributes() noexcept;

/// The name of an ID: that of the table, else the letter and the ID.  Empty if the ID isn't positive.
[[nodiscard]] std::string elementName(int id);
[[nodiscard]] std::string namespaceName(int id);
[[nodiscard]] std::string typeName(int id);
[[nodiscard]] std::string attributeName(int id);

/// The ID of a name in either spelling; 0 for a name without one.  The number behind the letter is canonical decimal
/// (no sign, no leading zero) and fits an int.
[[nodiscard]] int elementID(std::string_view name) noexcept;
[[nodiscard]] int namespaceID(std::string_view name) noexcept;
[[nodiscard]] int typeID(std::string_view name) noexcept;
[[nodiscard]] int attributeID(std::string_view name) noexcept;

} // namespace Qel::QelNames
