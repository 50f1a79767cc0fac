#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelNames.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"
#include "qel/records/RecordDescription.h"
#include "qel/records/RecordLimits.h"
#include "qel/records/RecordReference.h"
#include "qel/records/RecordSchema.h"

namespace Qel::Tool {

namespace {

ExitCode findType(const std::string& name, const Console& console, const QelRecordType*& type) {
    type = findRecordType(name);
    if (type)
        return ExitCode::success;
    return console.fail(ExitCode::negative, "unknown record type '" + name + "'; see `qel record list`");
}

// --- qel record list

Json toJson(const QelRecordType& type) {
    return {{"name", type.name}, {"namespace", type.nsId}, {"type", type.typeId}};
}

Json listAsJson() {
    Json array = Json::array();
    for (const QelRecordType& type : recordTypes())
        array.push_back(toJson(type));
    return array;
}

void printList(std::ostream& out) {
    Table table;
    table.addRow({"record", "namespace", "type"});
    for (const QelRecordType& type : recordTypes())
        table.addRow({std::string(type.name), namespaceText(type), typeText(type)});
    table.print(out);
}

ExitCode runList(const Invocation& invocation, const Console& console) {
    Output(invocation, console).print(listAsJson, printList);
    return ExitCode::success;
}

// --- qel record describe

Json descriptionAsJson(const QelRecordType& type) {
    Json document = toJson(type);
    document["fields"] = type.layout ? describeAsJson(*type.layout) : Json();
    return document;
}

void printDescription(std::ostream& out, const QelRecordType& type) {
    out << type.name << ", namespace " << namespaceText(type) << ", type " << typeText(type) << '\n';
    if (!type.layout) {
        out << "No table; read and written by custom code.\n";
        return;
    }
    using Align = Table::Align;
    Table table({Align::right, Align::right});
    table.addRow({"write", "read", "field", "elements", "kind", "on read", "on write"});
    for (const DescribedRow& row : describeRows(*type.layout))
        table.addRow({row.writePlace, row.readPlace, row.name, row.elements, row.kind, row.onRead, row.onWrite});
    table.print(out);
}

ExitCode runDescribe(const Invocation& invocation, const Console& console) {
    const QelRecordType* type = nullptr;
    if (const ExitCode code = findType(invocation.arguments[0], console, type); code != ExitCode::success)
        return code;
    Output(invocation, console)
        .print([&] { return descriptionAsJson(*type); }, [&](std::ostream& out) { printDescription(out, *type); });
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
            return console.fail(ExitCode::badInput, shownName(name) + ": contains no record");
        const int id = from->curID();
        (void)(id != 0 ? to->newChild(id) : to->newChild(from->curName()));
    }
    if (const auto reason = findFatalValue(type, *from))
        return console.fail(ExitCode::badInput, shownName(name) + ": " + *reason);
    clearErrorMessage();
    const QelRecordType::Results results = type.rewrite(*from, *to);
    const auto fail = [&](const char* functor, int result) {
        const std::string reason = getErrorMessage().empty() ? "" : ": " + getErrorMessage();
        return console.fail(ExitCode::badInput, std::string(type.name) + ": " + functor + " returned " +
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

// --- qel record schema

ExitCode findElement(const std::string& word, const Console& console, SchemaElement& element) {
    const auto separator = word.find('=');
    if (separator != std::string::npos)
        element.name = word.substr(0, separator);
    if (separator == 0)
        return console.fail(ExitCode::usage, "'" + word + "': missing element name before '='");
    return findType(separator == std::string::npos ? word : word.substr(separator + 1), console, element.type);
}

ExitCode runSchema(const Invocation& invocation, const Console& console) {
    std::vector<SchemaElement> elements;
    for (const std::string& word : invocation.arguments)
        if (const ExitCode code = findElement(word, console, elements.emplace_back()); code != ExitCode::success)
            return code;
    console.out << recordSchema(elements);
    return ExitCode::success;
}

// --- qel record reference

ExitCode runReference(const Invocation& invocation, const Console& console) {
    const std::filesystem::path folder = invocation.arguments[0];
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return console.fail(ExitCode::failed, folder.string() + ": " + error.message());
    for (const ReferencePage& page : referencePages())
        if (const ExitCode code =
                writeContent((folder / page.file).string(), page.text, console, QelMessageFile::NewFile::umaskAllows);
            code != ExitCode::success)
            return code;
    return ExitCode::success;
}

} // namespace

CommandGroup recordCommands() {
    static constexpr std::array commands{
        Command{"list", "", "List the record types with their namespace and type IDs", addJsonOption, runList},
        Command{"describe", "TYPE", "Show the fields of a record type and their elements in a message", addJsonOption,
                runDescribe},
        Command{"rewrite", "TYPE FILE...",
                "Read the record in the first element of a message and print a message with it; - is standard input",
                nullptr, runRewrite},
        Command{"schema", "[[NAME=]TYPE]...",
                "Print a RELAX NG schema for messages whose elements have these types, or any type", nullptr,
                runSchema},
        Command{"reference", "FOLDER", "Write a Markdown page for each record type, and an index page", nullptr,
                runReference},
    };
    return {"record", "Record types, and records in messages", commands};
}

} // namespace Qel::Tool
