#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Qel::Tool {

/// A JSON value.  The members of an object keep the order in which they were added.
class Json {
public:
    struct Member;
    using Array = std::vector<Json>;
    using Object = std::vector<Member>;
    using Value = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object>;

    // The special members are compiled once, in Json.cpp: they visit the variant.
    Json() noexcept;
    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(const Json& other);
    Json& operator=(Json&& other) noexcept;
    ~Json();

    Json(std::nullptr_t) noexcept;
    Json(double value) noexcept;
    Json(const char* text);
    Json(std::string_view text);
    Json(std::string text);
    Json(Array items);
    /// An object: {{"name", "eth0"}, {"mtu", 1500}}.
    Json(std::initializer_list<Member> members);

    Json(std::same_as<bool> auto value) : Json(ofBool(value)) {}
    template <class Number>
    requires((std::integral<Number> && !std::same_as<Number, bool>) || std::is_enum_v<Number>) Json(Number value)
        : Json(ofNumber(value)) {}
    /// An array of a container's elements.
    template <class Container>
    requires(!std::convertible_to<const Container&, std::string_view> &&
             requires(const Container& c) {
                 c.begin();
                 c.end();
             }) Json(const Container& container)
        : Json(Array(container.begin(), container.end())) {}

    [[nodiscard]] static Json array(Array items = {}) { return Json(std::move(items)); }
    [[nodiscard]] static Json object();

    /// The member of this name, which is added if it is missing.  Null becomes an object; any other value must be one.
    Json& operator[](std::string_view name);
    /// Null becomes an array; any other value must be one.
    void push_back(Json item);

    [[nodiscard]] const Value& value() const noexcept { return m_value; }

    /// Prints the document on one line, without a line end.
    friend std::ostream& operator<<(std::ostream& out, const Json& document);

private:
    static Json ofBool(bool value);
    static Json ofInteger(std::int64_t value);
    static Json ofUnsigned(std::uint64_t value);
    template <class Number> static Json ofNumber(Number value) {
        if constexpr (std::is_unsigned_v<Number>)
            return ofUnsigned(value);
        else
            return ofInteger(static_cast<std::int64_t>(value));
    }

    Value m_value;
};

struct Json::Member {
    std::string name;
    Json value;
};

/// Prints the document, indented, with a line end.  Bytes that aren't UTF-8 become the replacement character; control
/// characters are escaped.
void printJson(std::ostream& out, const Json& document);

} // namespace Qel::Tool
