#include "qel/cli/Json.h"

#include <algorithm>

namespace Qel::Tool {

Json::Json() noexcept = default;
Json::Json(const Json& other) = default;
Json::Json(Json&& other) noexcept = default;
Json& Json::operator=(const Json& other) = default;
Json& Json::operator=(Json&& other) noexcept = default;
Json::~Json() = default;

Json::Json(std::nullptr_t) noexcept {}
Json::Json(double value) noexcept : m_value(value) {}
Json::Json(const char* string) : m_value(std::string(string)) {}
Json::Json(std::string_view string) : m_value(std::string(string)) {}
Json::Json(std::string string) : m_value(std::move(string)) {}
Json::Json(Array items) : m_value(std::move(items)) {}
Json::Json(std::initializer_list<Member> members) : m_value(Object(members)) {}

Json Json::object() {
    Json json;
    json.m_value = Object();
    return json;
}

Json& Json::operator[](std::string_view name) {
    if (std::holds_alternative<std::nullptr_t>(m_value))
        m_value = Object();
    auto& members = std::get<Object>(m_value);
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member& member) { return member.name == name; });
    return found == members.end() ? members.emplace_back(Member{std::string(name), {}}).value : found->value;
}

void Json::push_back(Json item) {
    if (std::holds_alternative<std::nullptr_t>(m_value))
        m_value = Array();
    std::get<Array>(m_value).push_back(std::move(item));
}

Json Json::ofBool(bool value) {
    Json json;
    json.m_value = value;
    return json;
}

Json Json::ofInteger(std::int64_t value) {
    Json json;
    json.m_value = value;
    return json;
}

Json Json::ofUnsigned(std::uint64_t value) {
    Json json;
    json.m_value = value;
    return json;
}

} // namespace Qel::Tool
