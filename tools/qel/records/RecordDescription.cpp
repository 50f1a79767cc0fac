#include "qel/records/RecordDescription.h"

#include <algorithm>
#include <array>
#include <span>

#include "QelMessage/QelNames.h"
#include "QelMessage/QelWireLayout.h"
#include "qel/cli/Json.h"

namespace Qel::Tool {

namespace {

std::string_view nameOf(QelWireRead read) {
    switch (read) {
    case QelWireRead::required:
        return "required";
    case QelWireRead::optional:
        return "optional";
    case QelWireRead::ignored:
        return "ignored";
    }
    return "";
}

std::string_view nameOf(QelWireWrite write) {
    switch (write) {
    case QelWireWrite::always:
        return "always";
    case QelWireWrite::ifSet:
        return "ifSet";
    }
    return "";
}

std::string_view nameOf(QelWireForm form) {
    switch (form) {
    case QelWireForm::plain:
        return "plain";
    case QelWireForm::base64:
        return "base64";
    case QelWireForm::time:
        return "time";
    }
    return "";
}

/// The bits of a mask and their elements: "1 flag, 2 e1628".
std::string bitsText(std::span<const QelWireBit> bits) {
    std::string text;
    for (const QelWireBit& each : bits)
        text += (text.empty() ? "" : ", ") + std::to_string(each.bit) + ' ' + QelNames::elementName(each.id);
    return text;
}

/// The type of a field in words: "list of record QelQoS".
std::string describeKind(const QelWireCodec& codec) {
    const QelWireLayout* const layout = codec.layout ? codec.layout() : nullptr;
    const std::string_view typeName = layout ? layout->typeName : codec.typeName;
    const auto named = [&](const char* word) { return word + (' ' + std::string(typeName)); };
    const auto of = [](const QelWireCodec* part) { return part ? describeKind(*part) : std::string("values"); };
    switch (codec.kind) {
    case QelWireKind::text:
        return "text";
    case QelWireKind::integer:
        return "integer";
    case QelWireKind::longInteger:
        return "long integer";
    case QelWireKind::real:
        return "real";
    case QelWireKind::boolean:
        return "boolean";
    case QelWireKind::presence:
        return "presence";
    case QelWireKind::bits:
        return "bits " + bitsText(codec.bits);
    case QelWireKind::record:
        return named("record");
    case QelWireKind::derived:
        return named("record derived from");
    case QelWireKind::base:
        return named("base");
    case QelWireKind::group:
        return "group";
    case QelWireKind::sequence:
        return "list of " + of(codec.item);
    case QelWireKind::set:
        return "set of " + of(codec.item);
    case QelWireKind::map:
        return "map of " + of(codec.key) + " to " + of(codec.item);
    case QelWireKind::step:
        return codec.item ? "custom: " + describeKind(*codec.item) : "custom";
    }
    return "";
}

/// A row of a table, with its 1-based positions in writing and reading order.
struct DescribedField {
    const QelWireField* field;
    std::size_t writePlace;
    std::size_t readPlace;
};

std::vector<DescribedField> describedFields(const QelWireLayout& layout) {
    std::vector<DescribedField> described;
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        const auto place = std::find(layout.readingOrder.begin(), layout.readingOrder.end(), i);
        const auto readPlace = static_cast<std::size_t>(place - layout.readingOrder.begin());
        described.push_back({&layout.fields[i], i + 1, readPlace + 1});
    }
    return described;
}

bool isGroup(const QelWireField& field) {
    return field.codec->kind == QelWireKind::group;
}

Json toJson(const DescribedField& described) {
    const QelWireField& field = *described.field;
    Json json{{"field", field.name}, {"id", field.id}};
    const std::array<std::pair<const char*, int>, 3> inner{
        {{"item", field.item}, {"key", field.key}, {"value", field.value}}};
    for (const auto& [name, id] : inner) {
        if (id != 0)
            json[name] = id;
    }
    json["kind"] = describeKind(*field.codec);
    json["mayBeUnset"] = field.codec->isOptional;
    json["form"] = nameOf(field.form);
    json["read"] = nameOf(field.read);
    json["write"] = nameOf(field.write);
    json["writeOrder"] = described.writePlace;
    json["readOrder"] = described.readPlace;
    if (isGroup(field))
        json["fields"] = describeAsJson(*field.codec->layout());
    return json;
}

} // namespace

Json describeAsJson(const QelWireLayout& layout) {
    Json fields = Json::array();
    for (const DescribedField& described : describedFields(layout))
        fields.push_back(toJson(described));
    return fields;
}

namespace {

std::string elementText(int id) {
    return id == 0 ? "" : std::to_string(id) + ' ' + QelNames::elementName(id);
}

/// The elements of a field, from the outermost: "1100 list / 1101 item (1001 key, 1002 value)".
std::string elementsText(const QelWireField& field) {
    std::string text = elementText(field.id);
    if (field.item != 0 && field.codec->kind != QelWireKind::bits)
        text += (text.empty() ? "" : " / ") + elementText(field.item);
    if (field.key != 0)
        text += " (" + elementText(field.key) + ", " + elementText(field.value) + ')';
    else if (field.value != 0)
        text += " / " + elementText(field.value);
    return text;
}

std::string kindText(const QelWireField& field) {
    std::string text = describeKind(*field.codec);
    if (field.codec->isOptional)
        text += ", or unset";
    if (field.form != QelWireForm::plain)
        text += ", as " + std::string(nameOf(field.form));
    return text;
}

/// Prefixes of the positions and elements of a group's rows: "3.", "3.", "1229 cpu / ".
struct Prefixes {
    std::string write, read, elements;
};

void addRows(std::vector<DescribedRow>& rows, const QelWireLayout& layout, const Prefixes& prefixes) {
    for (const auto& [field, writePlace, readPlace] : describedFields(layout)) {
        const std::string write = prefixes.write + std::to_string(writePlace);
        const std::string read = prefixes.read + std::to_string(readPlace);
        const std::string elements = prefixes.elements + elementsText(*field);
        rows.push_back({write, read, std::string(field->name), elements, kindText(*field),
                        std::string(nameOf(field->read)), std::string(nameOf(field->write))});
        if (isGroup(*field))
            addRows(rows, *field->codec->layout(), {write + '.', read + '.', elements + " / "});
    }
}

/// Types up to this number are not written to the element's type attribute.
constexpr int greatestPlainType = 100;

} // namespace

std::vector<DescribedRow> describeRows(const QelWireLayout& layout) {
    std::vector<DescribedRow> rows;
    addRows(rows, layout, {});
    return rows;
}

std::string namespaceText(const QelRecordType& type) {
    return type.nsId == 0 ? "-" : std::to_string(type.nsId) + ' ' + QelNames::namespaceName(type.nsId);
}

std::string typeText(const QelRecordType& type) {
    return type.typeId <= greatestPlainType ? "-" : std::to_string(type.typeId) + ' ' + QelNames::typeName(type.typeId);
}

} // namespace Qel::Tool
