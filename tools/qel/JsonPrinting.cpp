#include <ostream>

#include <nlohmann/json.hpp>

#include "qel/Json.h"

namespace Qel::Tool {

namespace {

using Document = nlohmann::ordered_json;

constexpr int indent = 2;
constexpr int onOneLine = -1;

/// Makes the library's value of a value.
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

std::string printed(const Json& document, int width) {
    return std::visit(Converter(), document.value()).dump(width, ' ', false, Document::error_handler_t::replace);
}

} // namespace

void printJson(std::ostream& out, const Json& document) {
    out << printed(document, indent) << '\n';
}

std::ostream& operator<<(std::ostream& out, const Json& document) {
    return out << printed(document, onOneLine);
}

} // namespace Qel::Tool
