#include <array>
#include <ostream>
#include <span>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelNames.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

// --- qel message convert

constexpr std::string_view textForm = "text";
constexpr std::string_view binaryForm = "binary";

void addConvertOptions(Options& options) {
    options.add({.name = "to", .value = "FORM", .isRequired = true, .help = "output form, text or binary"});
}

ExitCode runConvert(const Invocation& invocation, const Console& console) {
    const std::string& in = invocation.arguments[0];
    const std::string& out = invocation.arguments[1];
    const std::string form = invocation.string("to");
    if (form != textForm && form != binaryForm)
        return console.fail(ExitCode::usage, "invalid value '" + form + "' for --to: expected text or binary");

    QelFileLock lock;
    if (areSameFile(in, out))
        if (const ExitCode code = lockFile(out, lock, console); code != ExitCode::success)
            return code;
    const auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readMessage(in, *message, console); code != ExitCode::success)
        return code;
    std::string content;
    if ((form == textForm ? toText(*message, content) : message->toBinary(content)) != 0)
        return console.fail(ExitCode::failed, out + ": " + getErrorMessage());
    return writeContent(out, content, console);
}

// --- qel message names

struct NameTable {
    const char* title;
    std::span<const QelNames::Entry> entries;
};

std::array<NameTable, 3> nameTables() {
    return {{{"elements", QelNames::elements()}, {"namespaces", QelNames::namespaces()}, {"types", QelNames::types()}}};
}

Json namesAsJson() {
    Json document = Json::object();
    for (const NameTable& table : nameTables()) {
        Json& names = document[table.title] = Json::object();
        for (const QelNames::Entry& entry : table.entries)
            names[std::to_string(entry.id)] = entry.name;
    }
    return document;
}

void printNames(std::ostream& out) {
    Table table({Table::Align::left, Table::Align::right});
    table.addRow({"table", "ID", "name"});
    for (const NameTable& names : nameTables()) {
        for (const QelNames::Entry& entry : names.entries)
            table.addRow({names.title, std::to_string(entry.id), std::string(entry.name)});
    }
    table.print(out);
}

ExitCode runNames(const Invocation& invocation, const Console& console) {
    Output(invocation, console).print(namesAsJson, printNames);
    return ExitCode::success;
}

} // namespace

CommandGroup messageCommands() {
    static constexpr std::array commands{
        Command{"convert", "IN OUT", "Convert a message to text or binary form; - is standard input or output",
                addConvertOptions, runConvert},
        Command{"names", "", "List the names of element, namespace and type IDs", addJsonOption, runNames},
    };
    return {"message", "Message files", commands};
}

} // namespace Qel::Tool
