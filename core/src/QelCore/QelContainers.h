#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "QelCommon/Debug.h"

namespace Qel {

/// A string of at most `size - 1` characters in a fixed array, usable in a flat record in shared memory.
///
/// The array is a format: the characters, padded with zeros to its end, so that equal strings are bytewise equal.  An
/// empty and an unset string both start with a zero; the second character is 1 if the string is specified.
///
/// Assigning or converting a longer string terminates the process.  Order: unset before every specified string, then by
/// characters as unsigned numbers.
template <std::size_t size, class charType = char> class limited_length_string {
public:
    static_assert(size >= 2, "the second character marks a specified empty string");

    /// Unset.
    constexpr limited_length_string() = default;
    /// Unset if `text` is null.
    limited_length_string(const charType* text) { *this = text; }
    limited_length_string(const std::basic_string<charType>& text) { *this = text; }

    limited_length_string& operator=(const charType* text) {
        if (text == nullptr) {
            *this = limited_length_string();
            return *this;
        }
        const std::basic_string_view<charType> characters(text);
        QEL_CHECK_AT(characters.size() + 1 <= size, "core/src/QelCore/QelContainers", 93);
        assign(characters);
        return *this;
    }
    /// Copies the characters up to the first zero.
    limited_length_string& operator=(const std::basic_string<charType>& text) {
        const std::basic_string_view<charType> characters(text.c_str());
        QEL_CHECK_AT(characters.size() + 1 <= size, "core/src/QelCore/QelContainers", 108);
        assign(characters);
        return *this;
    }

    [[nodiscard]] const charType* c_str() const noexcept { return m_characters; }
    /// Number of characters, at most `size - 1` if assigned through this class.
    [[nodiscard]] std::size_t length() const noexcept { return view().size(); }

    [[nodiscard]] bool isSpecified() const noexcept {
        return m_characters[0] != charType() || m_characters[1] == specifiedEmpty;
    }
    /// Converts an unset string to an empty one or vice versa.  A string with characters is unchanged.
    void specify(bool specified) noexcept {
        if (m_characters[0] == charType())
            m_characters[1] = specified ? specifiedEmpty : charType();
    }

    /// Three-way comparison: -1, 0 or 1.
    [[nodiscard]] int compare(const limited_length_string& other) const noexcept {
        return compare(other.isSpecified(), other.view());
    }
    /// Three-way comparison: -1, 0 or 1.  A null pointer compares as an unset string.
    [[nodiscard]] int compare(const charType* text) const noexcept {
        using View = std::basic_string_view<charType>;
        return compare(text != nullptr, text != nullptr ? View(text) : View());
    }

    friend bool operator==(const limited_length_string& a, const limited_length_string& b) noexcept {
        return a.compare(b) == 0;
    }
    friend bool operator==(const limited_length_string& a, const charType* b) noexcept { return a.compare(b) == 0; }
    friend bool operator==(const limited_length_string& a, const std::basic_string<charType>& b) noexcept {
        return a.compare(b.c_str()) == 0;
    }
    friend std::strong_ordering operator<=>(const limited_length_string& a, const limited_length_string& b) noexcept {
        return a.compare(b) <=> 0;
    }
    friend std::strong_ordering operator<=>(const limited_length_string& a, const charType* b) noexcept {
        return a.compare(b) <=> 0;
    }
    friend std::strong_ordering operator<=>(const limited_length_string& a,
                                            const std::basic_string<charType>& b) noexcept {
        return a.compare(b.c_str()) <=> 0;
    }

private:
    static constexpr charType specifiedEmpty = 1;

    /// `characters` may be part of this string.
    void assign(std::basic_string_view<charType> characters) {
        limited_length_string assigned;
        characters.copy(assigned.m_characters, size - 1);
        assigned.specify(true);
        *this = assigned;
    }

    /// Bounded by the array, because the enclosing record may come from a damaged file.
    [[nodiscard]] std::basic_string_view<charType> view() const noexcept {
        const std::basic_string_view<charType> all(m_characters, size);
        return all.substr(0, all.find(charType()));
    }

    [[nodiscard]] int compare(bool otherSpecified, std::basic_string_view<charType> other) const noexcept {
        if (!isSpecified() || !otherSpecified)
            return int(isSpecified()) - int(otherSpecified);
        const int order = view().compare(other);
        return (order > 0) - (order < 0);
    }

    charType m_characters[size] = {};
};

static_assert(sizeof(limited_length_string<16>) == 16 && std::is_standard_layout_v<limited_length_string<16>> &&
              std::is_trivially_copyable_v<limited_length_string<16>>);

/// A row of a constant table from which a `Map` is initialised; strings are stored as literals.
///
///     constexpr scalarPair<std::map<int, std::string>> rows[] = {{1, "one"}, {2, "two"}};
///     const std::map<int, std::string> names(std::begin(rows), std::end(rows));
template <class Map> struct scalarPair {
    template <class T> using Constant = std::conditional_t<std::is_same_v<T, std::string>, const char*, T>;

    Constant<typename Map::key_type> key;
    Constant<typename Map::mapped_type> value;

    operator std::pair<const typename Map::key_type, typename Map::mapped_type>() const { return {key, value}; }
};

} // namespace Qel
