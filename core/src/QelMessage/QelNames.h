#pragma once

#include <span>
#include <string>
#include <string_view>

#include "QelCommon/Export.h"

/// The vocabulary of message trees: readable names for the IDs of elements, namespaces, complex types and attributes.
///
/// An ID and its name are equivalent: `name` is element 1026. The numbered spelling, a letter and the ID (`e1026`,
/// `n292`, `t122`, `a7`), is accepted wherever a name is, for every positive ID, whether or not the tables have a name
/// for it. An ID without a name is printed in this form. Any other string is a legal name without an ID, such as the
/// sections and options of a configuration (`system`, `log_level`).
///
/// Names are unique within each kind; an element and a type may share one. The tables are constant data: they can be
/// used during static initialisation and from any thread.
namespace Qel::QelNames {

struct Entry {
    int id;
    std::string_view name;
};

/// The IDs with a name, in ascending order.
QEL_EXPORT [[nodiscard]] std::span<const Entry> elements() noexcept;
QEL_EXPORT [[nodiscard]] std::span<const Entry> namespaces() noexcept;
QEL_EXPORT [[nodiscard]] std::span<const Entry> types() noexcept;
/// Empty: no record uses an attribute.
QEL_EXPORT [[nodiscard]] std::span<const Entry> attributes() noexcept;

/// The name of an ID from the table, or else its numbered spelling. Empty if the ID is not positive.
QEL_EXPORT [[nodiscard]] std::string elementName(int id);
QEL_EXPORT [[nodiscard]] std::string namespaceName(int id);
QEL_EXPORT [[nodiscard]] std::string typeName(int id);
QEL_EXPORT [[nodiscard]] std::string attributeName(int id);

/// The ID of a name in either spelling; 0 for a name without an ID. The number in a numbered spelling must be canonical
/// decimal (no sign, no leading zero) and fit an int.
QEL_EXPORT [[nodiscard]] int elementID(std::string_view name) noexcept;
QEL_EXPORT [[nodiscard]] int namespaceID(std::string_view name) noexcept;
QEL_EXPORT [[nodiscard]] int typeID(std::string_view name) noexcept;
QEL_EXPORT [[nodiscard]] int attributeID(std::string_view name) noexcept;

} // namespace Qel::QelNames
