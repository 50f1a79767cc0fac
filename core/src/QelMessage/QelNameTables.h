#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "QelMessage/QelNames.h"

/// Construction and compile-time checks of the name tables.
namespace Qel::QelNames {

/// The names of one kind.
struct Table {
    char letter;                             ///< prefix of an ID in its numbered spelling
    std::span<const Entry> byID;             ///< sorted by ID
    std::span<const std::uint16_t> byName{}; ///< indexes into `byID`, sorted by name
};

extern const Table elementTable;
extern const Table namespaceTable;
extern const Table typeTable;
extern const Table attributeTable;

template <std::size_t size>
[[nodiscard]] constexpr std::array<std::uint16_t, size> indexByName(const Entry (&entries)[size]) {
    std::array<std::uint16_t, size> index{};
    for (std::size_t i = 0; i < size; ++i)
        index[i] = static_cast<std::uint16_t>(i);
    std::sort(index.begin(), index.end(),
              [&entries](std::uint16_t a, std::uint16_t b) { return entries[a].name < entries[b].name; });
    return index;
}

[[nodiscard]] constexpr bool idsAscend(std::span<const Entry> entries) {
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entries[i].id <= (i == 0 ? 0 : entries[i - 1].id))
            return false;
    return true;
}

[[nodiscard]] constexpr bool namesAreDistinct(std::span<const Entry> entries, std::span<const std::uint16_t> byName) {
    for (std::size_t i = 1; i < byName.size(); ++i)
        if (entries[byName[i - 1]].name == entries[byName[i]].name)
            return false;
    return true;
}

[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

[[nodiscard]] constexpr bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}

/// Lower-case words joined by `_`, short enough for a table column. The name must be usable as an XML name and as a
/// namespace prefix. It must not be reserved by XML or the text form, and it must not be a numbered spelling.
[[nodiscard]] constexpr bool isGoodName(std::string_view name) {
    constexpr std::size_t longest = 30;
    if (name.empty() || name.size() > longest || !isLower(name.front()))
        return false;
    if (!std::all_of(name.begin(), name.end(), [](char c) { return isLower(c) || isDigit(c) || c == '_'; }))
        return false;
    if (name.starts_with("xml") || name == "xsi" || name == "message")
        return false;
    const bool isNumbered = std::string_view("enta").find(name.front()) != std::string_view::npos &&
                            std::all_of(name.begin() + 1, name.end(), isDigit);
    return !isNumbered;
}

[[nodiscard]] constexpr bool namesAreGood(std::span<const Entry> entries) {
    return std::all_of(entries.begin(), entries.end(), [](const Entry& entry) { return isGoodName(entry.name); });
}

template <const auto& entries> inline constexpr auto indexOf = indexByName(entries);

/// A table of these entries. Compilation fails if they break a rule.
template <const auto& entries> [[nodiscard]] consteval Table checkedTable(char letter) {
    static_assert(idsAscend(entries), "IDs must be unique and in ascending order");
    static_assert(namesAreDistinct(entries, indexOf<entries>), "names must be unique");
    static_assert(namesAreGood(entries), "a name is malformed; see isGoodName");
    return {letter, entries, indexOf<entries>};
}

} // namespace Qel::QelNames
