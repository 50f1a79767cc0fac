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

/// A JSON value.  Object members keep their insertion order.
///
/// Commands build values and pass them to Output, which prints them.
class Json {
public:
    struct Member;
    using Array = std::vector<Json>;
    using Object = std::vector<Member>;
    using Value = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object>;

    // Out of line: each special member instantiates a visit of the variant.
    Json() noexcept;
    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(const Json& other);
    Json& operator=(Json&& other) noexcept;
    ~Json();

    Json(std::nullptr_t) noexcept;
    Json(double value) noexcept;
    Json(const char* string);
    Json(std::string_view string);
    Json(std::string string);
    Json(Array items);
    /// An object: {{"name", "eth0"}, {"mtu", 1500}}.
    Json(std::initializer_list<Member> members);

    Json(std::same_as<bool> auto value) : Json(ofBool(value)) {}
    template <class Number>
    requires((std::integral<Number> && !std::same_as<Number, bool>) || std::is_enum_v<Number>) Json(Number value)
        : Json(ofNumber(value)) {}
    /// An array with the elements of a container.
    template <class Container>
    requires(!std::convertible_to<const Container&, std::string_view> &&
             requires(const Container& c) {
                 c.begin();
                 c.end();
             }) Json(const Container& container)
        : Json(Array(container.begin(), container.end())) {}

    [[nodiscard]] static Json array(Array items = {}) { return Json(std::move(items)); }
    [[nodiscard]] static Json object();

    /// Returns the member `name`, adding it if absent.  Requires an object, or null, which becomes an object.
    Json& operator[](std::string_view name);
    /// Requires an array, or null, which becomes an array.
    void push_back(Json item);

    [[nodiscard]] const Value& value() const noexcept { return m_value; }

    /// Prints the value on one line, without a newline.
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

/// Prints the document, indented, and a newline.  Invalid UTF-8 is replaced by U+FFFD; control characters are escaped.
void printJson(std::ostream& out, const Json& document);

} // namespace Qel::Tool
