#include <algorithm>
#include <array>
#include <memory>
#include <ostream>

#include <nlohmann/json.hpp>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelNames.h"
#include "qel/Command.h"
#include "qel/MessageFiles.h"
#include "qel/Output.h"

namespace Qel::Tool {

namespace {

using Json = nlohmann::ordered_json;

ExitCode findType(const std::string& name, const Console& console, const QelRecordType*& type) {
    type = findRecordType(name);
    if (type)
        return ExitCode::success;
    return console.fail(ExitCode::notSo, "no record type '" + name + "'; see `qel record list`");
}

// --- qel record list

/// Types up to this one aren't stamped on an element.
constexpr int greatestPlainType = 100;

std::string namespaceText(const QelRecordType& type) {
    return type.nsId == 0 ? "-" : std::to_string(type.nsId) + ' ' + QelNames::namespaceName(type.nsId);
}

std::string typeText(const QelRecordType& type) {
    return type.typeId <= greatestPlainType ? "-" : std::to_string(type.typeId) + ' ' + QelNames::typeName(type.typeId);
}

Json toJson(const QelRecordType& type) {
    return {{"name", type.name}, {"namespace", type.nsId}, {"type", type.typeId}};
}

void printListAsJson(std::ostream& out) {
    Json array = Json::array();
    for (const QelRecordType& type : recordTypes())
        array.push_back(toJson(type));
    printJson(out, array);
}

void printList(std::ostream& out) {
    Table table;
    table.addRow({"record", "namespace", "type"});
    for (const QelRecordType& type : recordTypes())
        table.addRow({std::string(type.name), namespaceText(type), typeText(type)});
    table.print(out);
}

ExitCode runList(const Invocation& invocation, const Console& console) {
    (invocation.has("json") ? printListAsJson : printList)(console.out);
    return ExitCode::success;
}

// --- qel record describe

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

/// "1 flag, 2 e1628": the bits of a mask and their elements.
std::string bitsText(std::span<const QelWireBit> bits) {
    std::string text;
    for (const QelWireBit& each : bits)
        text += (text.empty() ? "" : ", ") + std::to_string(each.bit) + ' ' + QelNames::elementName(each.id);
    return text;
}

/// What a field holds, in words: "list of record QelQoS".
std::string describeKind(const QelWireCodec& codec) {
    const std::string_view typeName = codec.layout ? codec.layout()->typeName : codec.typeName;
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
        return codec.item ? "by hand: " + describeKind(*codec.item) : "by hand";
    }
    return "";
}

/// A row of a table, and its places in the two orders, which count from 1.
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

Json toJson(const QelWireLayout& layout);

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
        json["fields"] = toJson(*field.codec->layout());
    return json;
}

Json toJson(const QelWireLayout& layout) {
    Json fields = Json::array();
    for (const DescribedField& described : describedFields(layout))
        fields.push_back(toJson(described));
    return fields;
}

void printDescriptionAsJson(std::ostream& out, const QelRecordType& type) {
    Json document = toJson(type);
    document["fields"] = type.layout ? toJson(*type.layout) : Json();
    printJson(out, document);
}

std::string elementText(int id) {
    return id == 0 ? "" : std::to_string(id) + ' ' + QelNames::elementName(id);
}

/// The elements of a field, the outer one first: "1100 list / 1101 item (1001 key, 1002 value)".
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

/// What stands before the places and the elements of a group's rows: "3.", "3.", "1229 cpu / ".
struct Prefixes {
    std::string write, read, elements;
};

/// The rows of a table, and below a group its own.
void addRows(Table& table, const QelWireLayout& layout, const Prefixes& prefixes) {
    for (const auto& [field, writePlace, readPlace] : describedFields(layout)) {
        const std::string write = prefixes.write + std::to_string(writePlace);
        const std::string read = prefixes.read + std::to_string(readPlace);
        const std::string elements = prefixes.elements + elementsText(*field);
        table.addRow({write, read, std::string(field->name), elements, kindText(*field),
                      std::string(nameOf(field->read)), std::string(nameOf(field->write))});
        if (isGroup(*field))
            addRows(table, *field->codec->layout(), {write + '.', read + '.', elements + " / "});
    }
}

void printDescription(std::ostream& out, const QelRecordType& type) {
    out << type.name << ", namespace " << namespaceText(type) << ", type " << typeText(type) << '\n';
    if (!type.layout) {
        out << "Read and written by hand, without a table.\n";
        return;
    }
    using Align = Table::Align;
    Table table({Align::right, Align::right});
    table.addRow({"write", "read", "field", "elements", "kind", "on read", "on write"});
    addRows(table, *type.layout, {});
    table.print(out);
}

ExitCode runDescribe(const Invocation& invocation, const Console& console) {
    const QelRecordType* type = nullptr;
    if (const ExitCode code = findType(invocation.arguments[0], console, type); code != ExitCode::success)
        return code;
    (invocation.has("json") ? printDescriptionAsJson : printDescription)(console.out, *type);
    return ExitCode::success;
}

// --- qel record rewrite

ExitCode rewriteFile(const QelRecordType& type, const std::string& name, const Console& console) {
    const auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readMessage(name, *message, console); code != ExitCode::success)
        return code;
    const std::unique_ptr<QelMessageIterator> from(message->rootIterator());
    const auto_destroy<QelMessage> rewritten(new QelBinary);
    const std::unique_ptr<QelMessageIterator> to(rewritten->rootIterator());
    if (!type.isWholeMessage) {
        if (from->firstChild() != 0)
            return console.fail(ExitCode::badInput, shownName(name) + ": no record in it");
        const int id = from->curID();
        (void)(id != 0 ? to->newChild(id) : to->newChild(from->curName()));
    }
    clearErrorMessage();
    const QelRecordType::Results results = type.rewrite(*from, *to);
    const auto fail = [&](const char* functor, int result) {
        const std::string reason = getErrorMessage().empty() ? "" : ": " + getErrorMessage();
        return console.fail(ExitCode::badInput, std::string(type.name) + ": " + functor + " gave " +
                                                    std::to_string(result) + " for " + shownName(name) + reason);
    };
    if (results.read != 0)
        return fail("reader", results.read);
    if (results.write != 0)
        return fail("writer", results.write);
    std::string text;
    if (toText(*rewritten, text) != 0)
        return console.fail(ExitCode::failed, shownName(name) + ": " + getErrorMessage());
    console.out << text;
    return ExitCode::success;
}

ExitCode runRewrite(const Invocation& invocation, const Console& console) {
    const QelRecordType* type = nullptr;
    ExitCode worst = findType(invocation.arguments[0], console, type);
    if (worst != ExitCode::success)
        return worst;
    for (auto file = invocation.arguments.begin() + 1; file != invocation.arguments.end(); ++file)
        worst = std::max(worst, rewriteFile(*type, *file, console));
    return worst;
}

} // namespace

CommandGroup recordCommands() {
    static constexpr std::array commands{
        Command{"list", "", "Lists the record types with their namespace and type IDs.", addJsonOption, runList},
        Command{"describe", "TYPE", "Shows how a record type stands in a message.", addJsonOption, runDescribe},
        Command{"rewrite", "TYPE FILE...",
                "Reads the record in a message's first element and writes it anew; - is standard input.", nullptr,
                runRewrite},
    };
    return {"record", "Record types and records in messages.", commands};
}

} // namespace Qel::Tool
