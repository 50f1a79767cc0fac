#include <array>
#include <cstdio>
#include <ostream>

#include <nlohmann/json.hpp>

#include "QelCommon/ControlCharacters.h"
#include "QelCommon/Utf8.h"
#include "qel/cli/Json.h"

namespace Qel::Tool {

namespace {

using Document = nlohmann::ordered_json;

constexpr int indent = 2;
constexpr int onOneLine = -1;

/// Converts a Json value to a document of the JSON library.
struct Converter {
    template <class Plain> Document operator()(const Plain& value) const { return value; }
    Document operator()(const Json::Array& items) const {
        Document::array_t array;
        for (const Json& item : items)
            array.push_back(std::visit(*this, item.value()));
        return array;
    }
    Document operator()(const Json::Object& members) const {
        Document::object_t object;
        for (const Json::Member& member : members)
            object.emplace_back(member.name, std::visit(*this, member.value.value()));
        return object;
    }
};

/// Replaces control characters by \u escapes.  JSON requires this for U+0000 to U+001F only; C1, DEL and bidirectional
/// controls could still affect a terminal.
std::string escapeControls(std::string_view document) {
    std::string escaped;
    escaped.reserve(document.size());
    while (!document.empty()) {
        const auto [length, code] = firstUtf8Character(document);
        const std::size_t taken = length == 0 ? 1 : length;
        if (length != 0 && code != '\n' && isControlCharacter(code)) {
            std::array<char, 16> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
            escaped += escape.data();
        } else {
            escaped += document.substr(0, taken);
        }
        document.remove_prefix(taken);
    }
    return escaped;
}

std::string printed(const Json& document, int width) {
    return escapeControls(
        std::visit(Converter(), document.value()).dump(width, ' ', false, Document::error_handler_t::replace));
}

} // namespace

void printJson(std::ostream& out, const Json& document) {
    out << printed(document, indent) << '\n';
}

std::ostream& operator<<(std::ostream& out, const Json& document) {
    return out << printed(document, onOneLine);
}

} // namespace Qel::Tool
