#include "QelMessage/QelNames.h"

#include <algorithm>
#include <charconv>

#include "QelMessage/QelDefaultMap.h"
#include "QelMessage/QelNameTables.h"

namespace Qel {

namespace QelNames {

// No record uses an attribute, so attributes have only their numbered spelling.
constinit const Table attributeTable{'a', {}};

namespace {

/// Returns the name of an ID, found by binary search; empty if the table has none.
std::string_view findName(const Table& table, int id) noexcept {
    const auto entry = std::lower_bound(table.byID.begin(), table.byID.end(), id,
                                        [](const Entry& candidate, int wanted) { return candidate.id < wanted; });
    return entry != table.byID.end() && entry->id == id ? entry->name : std::string_view();
}

std::string printName(const Table& table, int id) {
    if (id <= 0)
        return {};
    const std::string_view name = findName(table, id);
    return name.empty() ? table.letter + std::to_string(id) : std::string(name);
}

/// The ID of a numbered spelling; 0 if `name` is not one.
int parseNumbered(char letter, std::string_view name) noexcept {
    if (!name.starts_with(letter))
        return 0;
    const std::string_view number = name.substr(1);
    // from_chars accepts these, but they are not canonical.
    if (number.starts_with('-') || number.starts_with('0'))
        return 0;
    int id = 0; // unchanged if there is no number or it does not fit
    const char* const end = number.data() + number.size();
    return std::from_chars(number.data(), end, id).ptr == end ? id : 0;
}

int findID(const Table& table, std::string_view name) noexcept {
    const auto place = std::lower_bound(
        table.byName.begin(), table.byName.end(), name,
        [&table](std::uint16_t candidate, std::string_view wanted) { return table.byID[candidate].name < wanted; });
    if (place != table.byName.end() && table.byID[*place].name == name)
        return table.byID[*place].id;
    return parseNumbered(table.letter, name);
}

Internal::CharArray toCharArray(std::string_view name) noexcept {
    return name.empty() ? Internal::CharArray() : Internal::CharArray(name.data(), static_cast<unsigned>(name.size()));
}

} // namespace

std::span<const Entry> elements() noexcept {
    return elementTable.byID;
}

std::span<const Entry> namespaces() noexcept {
    return namespaceTable.byID;
}

std::span<const Entry> types() noexcept {
    return typeTable.byID;
}

std::span<const Entry> attributes() noexcept {
    return attributeTable.byID;
}

std::string elementName(int id) {
    return printName(elementTable, id);
}

std::string namespaceName(int id) {
    return printName(namespaceTable, id);
}

std::string typeName(int id) {
    return printName(typeTable, id);
}

std::string attributeName(int id) {
    return printName(attributeTable, id);
}

int elementID(std::string_view name) noexcept {
    return findID(elementTable, name);
}

int namespaceID(std::string_view name) noexcept {
    return findID(namespaceTable, name);
}

int typeID(std::string_view name) noexcept {
    return findID(typeTable, name);
}

int attributeID(std::string_view name) noexcept {
    return findID(attributeTable, name);
}

} // namespace QelNames

Internal::CharArray getStringByElemIdDefault(int id) {
    return QelNames::toCharArray(QelNames::findName(QelNames::elementTable, id));
}

Internal::CharArray getStringByNSIdDefault(int id) {
    return QelNames::toCharArray(QelNames::findName(QelNames::namespaceTable, id));
}

Internal::CharArray getStringByTypeIdDefault(int id) {
    return QelNames::toCharArray(QelNames::findName(QelNames::typeTable, id));
}

Internal::CharArray QelDefaultMap::findElemID(int id) {
    return getStringByElemIdDefault(id);
}

Internal::CharArray QelDefaultMap::findNSID(int id) {
    return getStringByNSIdDefault(id);
}

Internal::CharArray QelDefaultMap::findTypeID(int id) {
    return getStringByTypeIdDefault(id);
}

} // namespace Qel
